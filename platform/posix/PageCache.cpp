#include "platform/PageCache.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <system_error>

#include "platform/FileHandle.h"
#include "platform/base/Formats.h"
#include "platform/posix/CachedReading.h"

namespace platform::PageCache {

using CachedReading::Presence;

namespace {

// The kernel cuts a longer request to the size of one request of the device, which is seldom less than this.
constexpr std::uint64_t requestSize = 0x20000;
// Few tags are larger. The kernel's own reading ahead loads the rest of a larger one, and a false size must
// not fill the memory.
constexpr std::uint64_t mostPerFile = 64 * requestSize;
// A file system that takes longer than this for a few bytes does not have them in memory.
constexpr std::chrono::microseconds cachedReadTime{200};

}  // namespace

bool load(const std::filesystem::path& file) noexcept {
  const auto started = std::chrono::steady_clock::now();
  struct stat attributes {};
  const Descriptor descriptor = CachedReading::openRegular(file, attributes);
  if (!descriptor) return true;
  const auto size = static_cast<std::uint64_t>(attributes.st_size);
  std::array<std::uint8_t, tagHeaderSize> start{};
  if (size < start.size()) return true;

  Presence presence = CachedReading::peek(descriptor.get(), start, 0);
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
  if (presence == Presence::present &&
      CachedReading::peek(descriptor.get(), last, end - 1) != Presence::absent)
    return true;
  for (std::uint64_t offset = 0; offset < end; offset += requestSize) {
    const std::uint64_t length = std::min(end - offset, requestSize);
    CachedReading::loadSoon(descriptor.get(), offset, length);
  }
  return false;
}

std::size_t freeDescriptors() {
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) == -1) return 0;
  std::size_t used = 0;
  std::error_code failure;
  std::filesystem::directory_iterator open(CachedReading::folderOfDescriptors(), failure);
  for (; !failure && open != std::filesystem::directory_iterator(); open.increment(failure)) ++used;
  return failure || limit.rlim_cur < used ? 0 : static_cast<std::size_t>(limit.rlim_cur) - used;
}

}  // namespace platform::PageCache
