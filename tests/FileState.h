#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/TemporaryFolder.h"

namespace tests {

/// What stays the same of a file that nobody writes to, replaces or changes the attributes of.
struct FileState {
  explicit FileState(const std::filesystem::path& file) {
    struct stat attributes {};
    if (::stat(file.c_str(), &attributes) == -1) return;
    inode = attributes.st_ino;
    changedSeconds = attributes.st_ctim.tv_sec;
    changedNanoseconds = attributes.st_ctim.tv_nsec;
    if (S_ISREG(attributes.st_mode)) contents = contentsOf(file);
  }
  bool operator==(const FileState&) const = default;

  ino_t inode = 0;
  time_t changedSeconds = 0;
  long changedNanoseconds = 0;
  std::string contents;
};

}  // namespace tests
