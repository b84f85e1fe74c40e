#include "platform/posix/CachedReading.h"

#include <fcntl.h>

namespace platform::CachedReading {

const char* folderOfDescriptors() {
  return "/dev/fd";
}

Presence peek(int, std::span<std::uint8_t>, std::uint64_t) {
  return Presence::unknown;
}

Descriptor openRegular(const std::filesystem::path& file, struct stat& attributes) {
  if (::stat(file.c_str(), &attributes) == -1 || !S_ISREG(attributes.st_mode)) return {};
  // Another program may have replaced the file since; opening it without waiting is harmless then.
  Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor || ::fstat(descriptor.get(), &attributes) == -1 || !S_ISREG(attributes.st_mode)) return {};
  return descriptor;
}

void loadSoon(int descriptor, std::uint64_t offset, std::uint64_t length) {
#ifdef F_RDADVISE
  struct radvisory advice {
    .ra_offset = static_cast<off_t>(offset), .ra_count = static_cast<int>(length)
  };
  ::fcntl(descriptor, F_RDADVISE, &advice);
#else
  ::posix_fadvise(descriptor, static_cast<off_t>(offset), static_cast<off_t>(length), POSIX_FADV_WILLNEED);
#endif
}

}  // namespace platform::CachedReading
