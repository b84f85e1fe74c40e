#pragma once

#include <cstddef>

#include "QuillmarkKit/transfer/TagApplier.h"
#include "platform/StandardStreams.h"

namespace quillmark {

/// Tells what became of each file: a line for each as soon as it is done, failures on standard error, and a
/// summary.
class Report {
 public:
  Report(bool dryRun, platform::StandardOutput& output) : dryRun_(dryRun), output_(output) {}

  void add(const QuillmarkKit::TagApplier::Result& result);
  /// Writes the summary and gives the exit status: 2 when a file failed, else 0.
  int finish();

 private:
  bool dryRun_;
  platform::StandardOutput& output_;
  std::size_t changed_ = 0;
  std::size_t unchanged_ = 0;
  std::size_t failed_ = 0;
};

}  // namespace quillmark
