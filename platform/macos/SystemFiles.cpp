#include "platform/posix/SystemFiles.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

#include "platform/base/Strings.h"

namespace platform::SystemFiles {

std::optional<std::filesystem::path> pathOf(const FileHandle& file) {
  std::array<char, PATH_MAX> buffer{};
  if (::fcntl(file.descriptor(), F_GETPATH, buffer.data()) == -1) return std::nullopt;
  return std::filesystem::path(buffer.data());
}

std::string nameAsStored(const FileHandle& file, const std::string& name) {
  // The path can also be that of another hard link, whose name is another one.
  const auto path = pathOf(file);
  if (!path) return name;
  const std::string stored = path->filename().native();
  return Strings::equalIgnoringCaseAndForm(stored, name) ? stored : name;
}

Descriptor openFolderForSearch(const std::filesystem::path& folder) {
  return Descriptor(retrying([&] { return ::open(folder.c_str(), O_SEARCH | O_CLOEXEC); }));
}

std::optional<bool> isEmpty(int folder) {
  return isEmptyFolder(folder);
}

bool mayWrite(const FileHandle& file, int folder, const std::string& name) {
  // A file that is locked in the Finder, or append-only, has a flag for that.
  constexpr std::uint32_t locked = UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND;
  if ((file.attributes().st_flags & locked) != 0) {
    errno = EACCES;
    return false;
  }
  return ::faccessat(folder, name.c_str(), W_OK, AT_EACCESS) == 0;
}

std::int64_t copyInsideKernel(int, std::uint64_t, int, std::size_t) {
  // The system clones and copies whole files only, and not a part of one into another file.
  return 0;
}

bool shareBlocks(int, std::uint64_t, int, std::uint64_t) {
  return false;
}

bool renameAsNew(int fromFolder, const char* from, int toFolder, const char* to) {
  return ::renameatx_np(fromFolder, from, toFolder, to, RENAME_EXCL) == 0;
}

int synchronise(int descriptor) {
  // `fsync` leaves the data in the cache of the drive. Not every file system has more to offer.
  const int done = ::fcntl(descriptor, F_FULLFSYNC);
  return done != -1 || errno == EINTR || errno == EIO || errno == ENOSPC ? done : ::fsync(descriptor);
}

}  // namespace platform::SystemFiles
