#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "quillmark/Arguments.h"
#include "quillmark/Console.h"

namespace quillmark {

/// Prints the result for each file as soon as it is known, with failures and notes on standard error, and a
/// summary.
class Report {
 public:
  /// `source` names the origin of the values in a note about fields that are removed because it does not have
  /// them; if it is empty, there is no such note.
  Report(const Arguments& arguments, std::string source, Console& console)
      : arguments_(arguments), source_(std::move(source)), console_(console) {}

  /// `given` is the file's name as it was given.
  void add(const QuillmarkKit::TagApplier::Result& result, std::string_view given);
  /// Waits until everything that was written has reached the disk, writes the summary and returns the exit
  /// status: 2 if a file failed or may not have reached the disk, though it counts as changed; else 0.
  /// `notReached` is the number of files that were left out because of an interruption.
  int finish(platform::ReplacementRun& run, std::size_t notReached);

 private:
  void noteRemovedFields();

  const Arguments& arguments_;
  std::string source_;
  Console& console_;
  std::size_t changed_ = 0;
  std::size_t unchanged_ = 0;
  std::size_t failed_ = 0;
  bool hasNotedFolder_ = false;
  QuillmarkKit::TagFields removed_;
};

}  // namespace quillmark
