#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "quillmark/Arguments.h"
#include "quillmark/Console.h"

namespace quillmark {

/// How paste, apply and set treat their files, and what they report.
struct RunOptions {
  explicit RunOptions(const Arguments& arguments)
      : dryRun(arguments.has(options::dryRun)),
        diff(arguments.has(options::diff)),
        paths(arguments.has(options::paths)),
        quiet(arguments.has(options::quiet)),
        recursive(arguments.has(options::recursive)) {}

  bool dryRun;
  /// Whether the report lists what changes in a file, field by field.
  bool diff;
  /// Whether the report names files as they were given, not by their last path component.
  bool paths;
  /// Whether the report leaves out the lines of unchanged files.
  bool quiet;
  /// Whether folders were replaced by the files in them.
  bool recursive;
};

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
