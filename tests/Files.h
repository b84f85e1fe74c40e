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
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// Writes a file of that name and returns its path.
  std::filesystem::path file(std::string_view name, std::string_view contents) const {
    std::filesystem::path file = path_ / name;
    std::ofstream(file, std::ios::binary) << contents;
    return file;
  }
  /// Returns the number of entries in the folder, hidden ones included.
  std::ptrdiff_t entryCount() const {
    return std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator());
  }

 private:
  std::filesystem::path path_;
};

inline std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The properties of a file that stay the same unless it is written to, replaced or given other attributes.
struct FileState {
  explicit FileState(const std::filesystem::path& file) {
    if (::stat(file.c_str(), &attributes) == 0 && S_ISREG(attributes.st_mode)) contents = contentsOf(file);
  }
  bool operator==(const FileState& other) const {
    return inode() == other.inode() && contents == other.contents &&
           attributes.st_ctim.tv_sec == other.attributes.st_ctim.tv_sec &&
           attributes.st_ctim.tv_nsec == other.attributes.st_ctim.tv_nsec;
  }
  ino_t inode() const { return attributes.st_ino; }

  struct stat attributes {};
  std::string contents;
};

}  // namespace tests
