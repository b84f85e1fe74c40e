#include "platform/posix/CachedReading.h"

#include <fcntl.h>
#include <sys/uio.h>

#include <array>
#include <cerrno>
#include <cstdio>

namespace platform::CachedReading {

const char* folderOfDescriptors() {
  return "/proc/self/fd";
}

Presence peek(int descriptor, std::span<std::uint8_t> buffer, std::uint64_t offset) {
  struct iovec place {
    .iov_base = buffer.data(), .iov_len = buffer.size()
  };
  const ssize_t count = ::preadv2(descriptor, &place, 1, static_cast<off_t>(offset), RWF_NOWAIT);
  if (count == static_cast<ssize_t>(buffer.size())) return Presence::present;
  return count != -1 || errno == EAGAIN ? Presence::absent : Presence::unknown;
}

Descriptor openRegular(const std::filesystem::path& file, struct stat& attributes) {
  // The file is examined before it is opened for reading, and the same file is then opened by its descriptor.
  const Descriptor found(::open(file.c_str(), O_PATH | O_CLOEXEC));
  if (!found || ::fstat(found.get(), &attributes) == -1 || !S_ISREG(attributes.st_mode)) return {};
  std::array<char, 32> own{};
  std::snprintf(own.data(), own.size(), "%s/%d", folderOfDescriptors(), found.get());
  return Descriptor(::open(own.data(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
}

void loadSoon(int descriptor, std::uint64_t offset, std::uint64_t length) {
  ::posix_fadvise(descriptor, static_cast<off_t>(offset), static_cast<off_t>(length), POSIX_FADV_WILLNEED);
}

}  // namespace platform::CachedReading
