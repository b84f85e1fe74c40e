#pragma once

#include "quillmark/Arguments.h"

namespace quillmark {

/// How paste, apply and set treat their files, and what they report.
struct RunOptions {
  explicit RunOptions(const Arguments& arguments)
      : dryRun(arguments.has(options::dryRun)),
        diff(arguments.has(options::diff)),
        paths(arguments.has(options::paths)),
        quiet(arguments.has(options::quiet)) {}

  bool dryRun;
  /// Whether the report lists what changes in a file, field by field.
  bool diff;
  /// Whether the report names files as they were given, not by their last path component.
  bool paths;
  /// Whether the report leaves out the lines of unchanged files.
  bool quiet;
};

}  // namespace quillmark
