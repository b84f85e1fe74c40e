#include "platform/posix/SystemFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <string_view>

namespace platform::SystemFiles {

std::optional<std::filesystem::path> pathOf(const FileHandle& file) {
  std::array<char, PATH_MAX> buffer;
  const std::string own = "/proc/self/fd/" + std::to_string(file.descriptor());
  const ssize_t length = ::readlink(own.c_str(), buffer.data(), buffer.size());
  const bool isWhole = length > 0 && static_cast<std::size_t>(length) < buffer.size();
  if (!isWhole || buffer[0] != '/') return std::nullopt;
  return std::filesystem::path(std::string(buffer.data(), static_cast<std::size_t>(length)));
}

std::string nameAsStored(const FileHandle&, const std::string& name) {
  return name;
}

Descriptor openFolderForSearch(const std::filesystem::path& folder) {
  return Descriptor(retrying([&] { return ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
}

std::optional<bool> isEmpty(int folder) {
  // Not every C library has a function for this call, or for that of `renameAsNew`. With 64-bit offsets,
  // `dirent` has the kernel's layout.
  static_assert(sizeof(ino_t) == 8 && sizeof(off_t) == 8);
  alignas(struct dirent) std::array<char, 1024> buffer;
  for (;;) {
    const long length = ::syscall(SYS_getdents64, folder, buffer.data(), buffer.size());
    if (length == -1) return std::nullopt;
    if (length == 0) return true;
    for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
      const auto* entry = reinterpret_cast<const struct dirent*>(buffer.data() + at);
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") return false;
      at += entry->d_reclen;
    }
  }
}

bool mayWrite(const FileHandle& file, int folder, const std::string& name) {
  if (::faccessat(file.descriptor(), "", W_OK, AT_EACCESS | AT_EMPTY_PATH) == 0) return true;
  if (errno != ENOSYS && errno != EPERM && errno != EINVAL) return false;
  // The system call that takes flags is missing before Linux 5.8 and in some sandboxes. C libraries may use
  // it even if no flags are given, so make the older system call directly.
  const bool isOneUser = ::geteuid() == ::getuid() && ::getegid() == ::getgid();
  return isOneUser ? ::syscall(SYS_faccessat, folder, name.c_str(), W_OK) == 0
                   : ::faccessat(folder, name.c_str(), W_OK, AT_EACCESS) == 0;
}

std::int64_t copyInsideKernel(int source, std::uint64_t offset, int target, std::size_t count) {
  auto from = static_cast<off_t>(offset);
  return retrying([&] { return ::copy_file_range(source, &from, target, nullptr, count, 0); });
}

bool shareBlocks(int source, std::uint64_t from, int target, std::uint64_t to) {
  constexpr std::uint64_t toTheEnd = 0;
  struct file_clone_range range {
    .src_fd = source, .src_offset = from, .src_length = toTheEnd, .dest_offset = to
  };
  return ::ioctl(target, FICLONERANGE, &range) == 0;
}

bool renameAsNew(int fromFolder, const char* from, int toFolder, const char* to) {
  constexpr unsigned int noReplace = 1;
  return ::syscall(SYS_renameat2, fromFolder, from, toFolder, to, noReplace) == 0;
}

int synchronise(int descriptor) {
  return ::fsync(descriptor);
}

}  // namespace platform::SystemFiles
