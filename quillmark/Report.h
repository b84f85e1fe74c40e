#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "QuillmarkKit/transfer/TagApplier.h"
#include "quillmark/Console.h"
#include "quillmark/RunOptions.h"

namespace quillmark {

/// Reports what became of each file: a line for each as soon as it is done, failures and notes on standard
/// error, and a summary.
class Report {
 public:
  /// `source` names for people where the values come from if fields that it does not have are removed from
  /// files, or is empty.
  Report(const RunOptions& options, std::string source, Console& console)
      : options_(options), source_(std::move(source)), console_(console) {}

  /// `given` is the file's name as it was given.
  void add(const QuillmarkKit::TagApplier::Result& result, std::string_view given);
  /// Waits until everything that was written has reached the disk. If that fails, the files still count as
  /// changed, but the exit status is that of a failure.
  void synchronise(platform::ReplacementRun& run);
  /// Writes the summary and returns the exit status: 2 if a file failed or may not have reached the disk,
  /// else 0. `notReached` is the number of files that an interruption has left out.
  int finish(std::size_t notReached);

 private:
  void noteRemovedFields();

  const RunOptions& options_;
  std::string source_;
  Console& console_;
  std::size_t changed_ = 0;
  std::size_t unchanged_ = 0;
  std::size_t failed_ = 0;
  bool isSynchronised_ = true;
  bool hasNotedFolder_ = false;
  QuillmarkKit::TagFields removed_;
};

}  // namespace quillmark
