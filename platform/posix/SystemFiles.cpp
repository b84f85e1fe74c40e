#include "platform/posix/SystemFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace platform::SystemFiles {

std::optional<std::filesystem::path> pathOf(const FileHandle&) {
  return std::nullopt;
}

std::string nameAsStored(const FileHandle&, const std::string& name) {
  return name;
}

Descriptor openFolderForSearch(const std::filesystem::path&) {
  errno = EACCES;
  return {};
}

std::optional<bool> isEmpty(int folder) {
  return isEmptyFolder(folder);
}

bool mayWrite(const FileHandle&, int folder, const std::string& name) {
  return ::faccessat(folder, name.c_str(), W_OK, AT_EACCESS) == 0;
}

std::int64_t copyInsideKernel(int, std::uint64_t, int, std::size_t) {
  return 0;
}

bool shareBlocks(int, std::uint64_t, int, std::uint64_t) {
  return false;
}

bool renameAsNew(int, const char*, int, const char*) {
  errno = ENOSYS;
  return false;
}

int synchronise(int descriptor) {
  return ::fsync(descriptor);
}

}  // namespace platform::SystemFiles
