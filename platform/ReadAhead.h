#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

namespace platform {

/// Reads the tags of the next files of a run into memory while the run works on one file, so that it does not
/// wait for a disk or a network once for each file. The bytes read are not used, so the run's results do not
/// depend on this.
///
/// Threads exist only while they help: they start when two files in a row had to be waited for, and end after
/// many files in a row had not. They receive no signals, and nothing waits for them: they may outlive this
/// object, and a thread that cannot open its file ends with the process. Must be used by one thread only.
class ReadAhead {
 public:
  /// Returns the path of the file at a position. Called by `advanceTo` only.
  using Location = std::function<std::filesystem::path(std::size_t position)>;

  ReadAhead(std::size_t fileCount, Location location)
      : fileCount_(fileCount), location_(std::move(location)) {}
  ~ReadAhead() { endThreads(); }
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// Starts to read the files after `position`. Must be called before the run opens the file at `position`.
  /// The positions must ascend.
  void advanceTo(std::size_t position);

 private:
  using Clock = std::chrono::steady_clock;
  struct Queue;

  static void work(Queue& queue);
  bool isWorthwhile(std::size_t position);
  void startThreads();
  void endThreads();

  std::size_t fileCount_;
  Location location_;
  /// The time of the last call of `advanceTo` without threads, to measure how long a file took.
  Clock::time_point begun_;
  /// The first position at which reading is timed again.
  std::size_t nextLook_ = 1;
  /// The first file that was not yet passed to the threads.
  std::size_t nextToAdd_ = 0;
  /// Shared with the threads; absent without threads.
  std::shared_ptr<Queue> queue_;
};

}  // namespace platform
