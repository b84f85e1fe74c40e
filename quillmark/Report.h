#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "QuillmarkKit/transfer/TagApplier.h"
#include "quillmark/Console.h"
#include "quillmark/RunOptions.h"

namespace quillmark {

/// Prints the result for each file as soon as it is known, with failures and notes on standard error, and a
/// summary.
class Report {
 public:
  /// `source` names the origin of the values in a note about fields that are removed because it does not have
  /// them; if it is empty, there is no such note.
  Report(const RunOptions& options, std::string source, Console& console)
      : options_(options), source_(std::move(source)), console_(console) {}

  /// `given` is the file's name as it was given.
  void add(const QuillmarkKit::TagApplier::Result& result, std::string_view given);
  /// Waits until everything that was written has reached the disk. If that fails, the files still count as
  /// changed, but the exit status is that of a failure.
  void synchronise(platform::ReplacementRun& run);
  /// Writes the summary and returns the exit status: 2 if a file failed or may not have reached the disk,
  /// else 0. `notReached` is the number of files that were left out because of an interruption.
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
