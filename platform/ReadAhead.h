#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace platform {

/// Threads that bring files into the page cache. They receive no signals. The destructor waits until all of
/// them have ended; a file that a thread is reading is finished first.
class ReadAheadThreads {
 public:
  /// Starts up to `count` threads, or as many as the system allows, which can be none.
  explicit ReadAheadThreads(std::size_t count);
  ~ReadAheadThreads();
  ReadAheadThreads(const ReadAheadThreads&) = delete;
  ReadAheadThreads& operator=(const ReadAheadThreads&) = delete;

  /// Adds a file of the run to those that are to be read. The positions of files must ascend.
  void add(std::size_t position, std::filesystem::path file);
  /// Drops the files up to this position, because the run has reached them.
  void dropThrough(std::size_t position);
  /// Returns how many files in a row, up to the last one that was read, were already in the page cache.
  std::size_t cachedInARow();

 private:
  struct Wanted {
    std::size_t position;
    std::filesystem::path file;
  };

  void work();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Wanted> wanted_;
  std::size_t cachedInARow_ = 0;
  bool isEnding_ = false;
  std::vector<std::thread> threads_;
};

/// Brings the tags of the next files of a run into the page cache while the run works on one file, so that it
/// does not wait for a disk or a network once for each file. The bytes read are not used, so the run's
/// results do not depend on this.
///
/// Threads exist only while they help: they start when a file took long and the next one is not in the page
/// cache, and end after many files in a row were. Must be used by one thread only, and destroyed before the
/// process forks or ends by a signal.
class ReadAhead {
 public:
  /// Returns the path of the file at a position. Called by `advanceTo` only.
  using Location = std::function<std::filesystem::path(std::size_t position)>;

  ReadAhead(std::size_t fileCount, Location location)
      : fileCount_(fileCount), location_(std::move(location)) {}

  /// Starts to read the files after `position`. Must be called before the run opens the file at `position`.
  /// The positions must ascend.
  void advanceTo(std::size_t position);

 private:
  using Clock = std::chrono::steady_clock;

  bool isWorthwhile(std::size_t position);
  void start();

  std::size_t fileCount_;
  Location location_;
  /// The time of the last call of `isWorthwhile`, to measure how long a file took.
  Clock::time_point begun_;
  /// The first position at which the page cache is examined again.
  std::size_t nextLook_ = 1;
  /// The first file that was not yet passed to the threads.
  std::size_t nextToAdd_ = 0;
  std::unique_ptr<ReadAheadThreads> threads_;
};

}  // namespace platform
