#include "platform/ReadAhead.h"

#include <pthread.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <utility>

#include "platform/PageCache.h"

namespace platform {

namespace {

constexpr std::size_t mostThreads = 8;
// More descriptors than the rest of the program has open at a time, without the standard streams.
constexpr std::size_t descriptorsOfOthers = 16;
// Enough that each thread finds work while others wait; few enough that their tags are still in memory when
// the run reaches them.
constexpr std::size_t filesAhead = 4 * mostThreads;
// With fewer files left, starting threads is not worth it.
constexpr std::size_t fewestFilesToCome = 4;
// A file in memory seldom takes longer than this, and another file seldom less.
constexpr std::chrono::microseconds longTime{60};
// The number of files between two checks, so that checking costs nothing if files take long for other
// reasons.
constexpr std::size_t filesBetweenLooks = 16;
// After this many files in a row that were in memory, the next ones are expected to be, too.
constexpr std::size_t cachedFilesToEnd = 2 * filesAhead;

/// Blocks all signals in the calling thread, and in threads that it starts, while this object exists.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

ReadAheadThreads::ReadAheadThreads(std::size_t count) {
  const SignalsBlocked blocked;
  threads_.reserve(count);
  try {
    while (threads_.size() < count) threads_.emplace_back([this] { work(); });
  } catch (const std::exception&) {
    // The system allows no more threads.
  }
}

ReadAheadThreads::~ReadAheadThreads() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void ReadAheadThreads::add(std::size_t position, std::filesystem::path file) {
  {
    const std::lock_guard lock(mutex_);
    wanted_.push_back({position, std::move(file)});
  }
  changed_.notify_one();
}

void ReadAheadThreads::dropThrough(std::size_t position) {
  const std::lock_guard lock(mutex_);
  while (!wanted_.empty() && wanted_.front().position <= position) wanted_.pop_front();
}

std::size_t ReadAheadThreads::cachedInARow() {
  const std::lock_guard lock(mutex_);
  return cachedInARow_;
}

void ReadAheadThreads::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return isEnding_ || !wanted_.empty(); });
    if (isEnding_) return;
    const std::filesystem::path file = std::move(wanted_.front().file);
    wanted_.pop_front();
    lock.unlock();
    const bool wasCached = PageCache::load(file);
    lock.lock();
    cachedInARow_ = wasCached ? cachedInARow_ + 1 : 0;
  }
}

void ReadAhead::advanceTo(std::size_t position) {
  if (fileCount_ < fewestFilesToCome) return;
  if (!threads_) {
    if (!isWorthwhile(position)) return;
    nextToAdd_ = position + 1;
    start();
    if (!threads_) return;
  }
  threads_->dropThrough(position);
  if (threads_->cachedInARow() >= cachedFilesToEnd) {
    threads_.reset();
    nextLook_ = position + filesBetweenLooks;
    return;
  }
  nextToAdd_ = std::max(nextToAdd_, position + 1);
  const std::size_t end = std::min(fileCount_, position + 1 + filesAhead);
  for (; nextToAdd_ < end; ++nextToAdd_) threads_->add(nextToAdd_, location_(nextToAdd_));
}

bool ReadAhead::isWorthwhile(std::size_t position) {
  const Clock::time_point now = Clock::now();
  const auto taken = now - std::exchange(begun_, now);
  if (position < nextLook_ || taken < longTime || fileCount_ - position <= fewestFilesToCome) return false;
  nextLook_ = position + filesBetweenLooks;
  return !PageCache::load(location_(position));
}

void ReadAhead::start() {
  const std::size_t available = PageCache::freeDescriptors();
  if (available < descriptorsOfOthers + PageCache::descriptorsPerLoad) return;
  threads_ = std::make_unique<ReadAheadThreads>(
      std::min(mostThreads, (available - descriptorsOfOthers) / PageCache::descriptorsPerLoad));
}

}  // namespace platform
