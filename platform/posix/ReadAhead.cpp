#include "platform/ReadAhead.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/FileHandle.h"
#include "platform/base/Formats.h"

namespace platform {

namespace {

// Each thread has one file open at a time.
constexpr std::size_t threadCount = 8;
// More descriptors than the rest of the program has open at a time, without the standard streams.
constexpr std::size_t descriptorsOfOthers = 16;
// Enough that each thread finds work while others wait; few enough that their tags are still in memory when
// the run reaches them.
constexpr std::size_t filesAhead = 4 * threadCount;
// With fewer files left, starting threads is not worth it.
constexpr std::size_t fewestFilesToCome = 4;
// A file in memory seldom takes longer than this, and another file seldom less.
constexpr std::chrono::microseconds longTime{60};
// The number of files between two looks, so that looking costs nothing if files take long for other reasons.
constexpr std::size_t filesBetweenLooks = 16;
// After this many files in a row that were in memory, the next ones are expected to be, too.
constexpr std::size_t fastFilesToEnd = 2 * filesAhead;
// The kernel cuts a longer request to the size of one request of the device, which is seldom less.
constexpr std::uint64_t requestSize = 0x20000;
// Few tags are larger. The kernel's own reading ahead loads the rest of a larger one, and a false size must
// not fill the memory.
constexpr std::uint64_t mostPerFile = 64 * requestSize;

/// Reads the file's first bytes, and starts to read the tag that begins there. Returns whether the bytes had
/// to be waited for. Does nothing if this is no regular file: opening a pipe or a device could be noticed at
/// its other end.
bool load(const std::filesystem::path& file) {
  struct stat attributes {};
  if (::stat(file.c_str(), &attributes) == -1 || !S_ISREG(attributes.st_mode)) return false;
  // If another program has replaced the file by a pipe since, it is not waited for, and reading it fails.
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor) return false;
  std::array<std::uint8_t, tagHeaderSize> start{};
  const auto timeToRead = [&] {
    const auto begun = std::chrono::steady_clock::now();
    const bool isRead = ::pread(descriptor.get(), start.data(), start.size(), 0) == std::ssize(start);
    return isRead ? std::chrono::steady_clock::now() - begun : std::chrono::nanoseconds(0);
  };
  const auto first = timeToRead();
  const std::uint64_t end =
      std::min({claimedTagSize(start), static_cast<std::uint64_t>(attributes.st_size), mostPerFile});
  for (std::uint64_t offset = 0; offset < end; offset += requestSize) {
    const std::uint64_t length = std::min(end - offset, requestSize);
#ifdef F_RDADVISE
    radvisory advice{static_cast<off_t>(offset), static_cast<int>(length)};
    ::fcntl(descriptor.get(), F_RDADVISE, &advice);
#else
    ::posix_fadvise(descriptor.get(), static_cast<off_t>(offset), static_cast<off_t>(length),
                    POSIX_FADV_WILLNEED);
#endif
  }
  // The second time, the bytes are in memory. On a busy or traced system, that takes long as well.
  return first >= longTime && first >= 4 * timeToRead();
}

/// Returns whether the threads leave enough descriptors to the rest of the program.
bool hasDescriptorsToSpare() {
  struct rlimit limit {};
  // The lowest free number shows how many are in use.
  const Descriptor lowest(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0));
  return lowest && ::getrlimit(RLIMIT_NOFILE, &limit) == 0 &&
         limit.rlim_cur >= static_cast<std::size_t>(lowest.get()) + threadCount + descriptorsOfOthers;
}

}  // namespace

/// The files that are to be read. Belongs to the run and to its threads.
struct ReadAhead::Queue {
  std::mutex mutex;
  std::condition_variable changed;
  /// Their positions in the run, and their paths.
  std::deque<std::pair<std::size_t, std::filesystem::path>> items;
  /// The number of files in a row, up to the last one read, that were in memory.
  std::atomic<std::size_t> fastInARow = 0;
  bool isEnding = false;
};

void ReadAhead::work(Queue& queue) {
  std::unique_lock lock(queue.mutex);
  for (;;) {
    queue.changed.wait(lock, [&] { return queue.isEnding || !queue.items.empty(); });
    if (queue.isEnding) return;
    const std::filesystem::path file = std::move(queue.items.front().second);
    queue.items.pop_front();
    lock.unlock();
    const bool wasSlow = load(file);
    lock.lock();
    queue.fastInARow = wasSlow ? 0 : queue.fastInARow + 1;
  }
}

void ReadAhead::advanceTo(std::size_t position) {
  if (!queue_) {
    if (!isWorthwhile(position)) return;
    startThreads();
  }
  if (queue_->fastInARow >= fastFilesToEnd) {
    endThreads();
    nextLook_ = position + filesBetweenLooks;
    return;
  }
  const std::lock_guard lock(queue_->mutex);
  auto& items = queue_->items;
  // The run has reached these itself.
  while (!items.empty() && items.front().first <= position) items.pop_front();
  nextToAdd_ = std::max(nextToAdd_, position + 1);
  const std::size_t end = std::min(fileCount_, position + 1 + filesAhead);
  for (; nextToAdd_ < end; ++nextToAdd_) items.emplace_back(nextToAdd_, location_(nextToAdd_));
  queue_->changed.notify_all();
}

bool ReadAhead::isWorthwhile(std::size_t position) {
  const Clock::time_point now = Clock::now();
  const auto taken = now - std::exchange(begun_, now);
  if (position < nextLook_ || taken < longTime || fileCount_ - position <= fewestFilesToCome) return false;
  nextLook_ = position + filesBetweenLooks;
  return load(location_(position)) && load(location_(position + 1)) && hasDescriptorsToSpare();
}

/// Starts as many threads as the system allows, which can be none.
void ReadAhead::startThreads() {
  queue_ = std::make_shared<Queue>();
  // Threads inherit the signals that are blocked.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  try {
    for (std::size_t i = 0; i < threadCount; ++i) std::thread([queue = queue_] { work(*queue); }).detach();
  } catch (const std::exception&) {
    // The files are read without them.
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void ReadAhead::endThreads() {
  if (!queue_) return;
  {
    const std::lock_guard lock(queue_->mutex);
    queue_->isEnding = true;
  }
  queue_->changed.notify_all();
  queue_.reset();
}

}  // namespace platform
