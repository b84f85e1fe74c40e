#include "platform/PageCache.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <span>
#include <system_error>

#include "platform/Descriptor.h"
#include "platform/base/Formats.h"

namespace platform::PageCache {

namespace {

// The kernel cuts a longer request to what one request of the device holds, which is seldom less than this.
constexpr std::uint64_t requestSize = 0x20000;
// Few tags are larger. The rest of one that is comes with the kernel's own reading ahead, and a false size
// must not fill the memory.
constexpr std::uint64_t mostPerFile = 64 * requestSize;
// A file system that takes longer for a few bytes does not have them in memory.
constexpr std::chrono::microseconds cachedReadTime{200};

enum class Presence : std::uint8_t { present, absent, unknown };

/// Reads without waiting for a disk or a network. `buffer` is filled if its bytes are present.
Presence peek(int descriptor, std::span<std::uint8_t> buffer, std::uint64_t offset) {
  struct iovec place {
    .iov_base = buffer.data(), .iov_len = buffer.size()
  };
  const ssize_t count = ::preadv2(descriptor, &place, 1, static_cast<off_t>(offset), RWF_NOWAIT);
  if (count == static_cast<ssize_t>(buffer.size())) return Presence::present;
  return count != -1 || errno == EAGAIN ? Presence::absent : Presence::unknown;
}

/// Opens a regular file for reading. The file is looked at before it is opened, because opening a pipe or a
/// device for reading would show at its other end; and the file that was looked at is the one that is opened.
Descriptor openRegular(const std::filesystem::path& file, struct stat& attributes) {
  const Descriptor found(::open(file.c_str(), O_PATH | O_CLOEXEC));
  if (!found || ::fstat(found.get(), &attributes) == -1 || !S_ISREG(attributes.st_mode)) return {};
  std::array<char, 32> own{};
  std::snprintf(own.data(), own.size(), "/proc/self/fd/%d", found.get());
  return Descriptor(::open(own.data(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
}

}  // namespace

bool load(const std::filesystem::path& file) noexcept {
  const auto started = std::chrono::steady_clock::now();
  struct stat attributes {};
  const Descriptor descriptor = openRegular(file, attributes);
  if (!descriptor) return true;
  const auto size = static_cast<std::uint64_t>(attributes.st_size);
  std::array<std::uint8_t, tagHeaderSize> start{};
  if (size < start.size()) return true;

  Presence presence = peek(descriptor.get(), start, 0);
  if (presence != Presence::present &&
      ::pread(descriptor.get(), start.data(), start.size(), 0) != static_cast<ssize_t>(start.size())) {
    return true;
  }
  if (presence == Presence::unknown) {
    const bool isFast = std::chrono::steady_clock::now() - started < cachedReadTime;
    presence = isFast ? Presence::present : Presence::absent;
  }
  const std::uint64_t end = std::min({claimedTagSize(start), size, mostPerFile});
  if (end <= start.size()) return presence == Presence::present;
  std::array<std::uint8_t, 1> last{};
  if (presence == Presence::present && peek(descriptor.get(), last, end - 1) != Presence::absent) return true;
  for (std::uint64_t offset = 0; offset < end; offset += requestSize) {
    const std::uint64_t length = std::min(end - offset, requestSize);
    ::posix_fadvise(descriptor.get(), static_cast<off_t>(offset), static_cast<off_t>(length),
                    POSIX_FADV_WILLNEED);
  }
  return false;
}

std::size_t freeDescriptors() {
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) == -1) return 0;
  std::size_t used = 0;
  std::error_code failure;
  std::filesystem::directory_iterator open("/proc/self/fd", failure);
  for (; !failure && open != std::filesystem::directory_iterator(); open.increment(failure)) ++used;
  return failure || limit.rlim_cur < used ? 0 : static_cast<std::size_t>(limit.rlim_cur) - used;
}

}  // namespace platform::PageCache
