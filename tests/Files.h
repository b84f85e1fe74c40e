#pragma once

#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tests {

inline std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Returns a text that stays the same unless the file is written to, replaced or given other attributes.
inline std::string stateOf(const std::filesystem::path& file) {
  struct stat attributes {};
  ::lstat(file.c_str(), &attributes);
  const auto& [seconds, nanoseconds] = attributes.st_ctim;
  return std::to_string(attributes.st_ino) + " " + std::to_string(seconds) + "." +
         std::to_string(nanoseconds) + (S_ISREG(attributes.st_mode) ? contentsOf(file) : "");
}

/// A temporary folder, which the destructor removes.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillmark-test-XXXXXX").native();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(TemporaryFolder&&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// Writes a file of that name and returns its path.
  std::filesystem::path file(std::string_view name, std::string_view contents) const {
    std::ofstream(path_ / name, std::ios::binary) << contents;
    return path_ / name;
  }
  /// Returns the number of entries in the folder, hidden ones included.
  std::ptrdiff_t entryCount() const {
    return std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator());
  }

 private:
  std::filesystem::path path_;
};

}  // namespace tests
