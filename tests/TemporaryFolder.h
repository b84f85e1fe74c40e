#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tests {

/// A folder of a test's own that goes with the test.
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
  /// Writes a file of that name and gives its path.
  std::filesystem::path file(std::string_view name, std::string_view contents) const {
    std::filesystem::path file = path_ / name;
    std::ofstream(file, std::ios::binary) << contents;
    return file;
  }
  /// How many entries the folder has, hidden ones included.
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

}  // namespace tests
