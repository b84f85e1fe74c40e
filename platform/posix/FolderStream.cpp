#include "platform/posix/FolderStream.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>

namespace platform {

std::optional<bool> isEmptyFolder(int folder) {
  const FolderStream stream = streamOf(
      Descriptor(retrying([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); })));
  if (!stream) return std::nullopt;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(stream.get());
    if (entry == nullptr) return errno == 0 ? std::optional(true) : std::nullopt;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return false;
  }
}

}  // namespace platform
