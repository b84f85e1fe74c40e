#pragma once

#include <chrono>
#include <filesystem>

#include "quillmark/Console.h"

namespace quillmark {

/// Shows the progress of a run over many files after it has lasted a second, if standard error is a terminal.
class Progress {
 public:
  Progress(std::size_t fileCount, Console& console) : fileCount_(fileCount), console_(console) {}
  ~Progress() { console_.eraseStatus(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Must be called before each file.
  void next(const std::filesystem::path& file);

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t fileCount_;
  Console& console_;
  std::size_t count_ = 0;
  Clock::time_point due_ = Clock::now() + std::chrono::seconds(1);
};

}  // namespace quillmark
