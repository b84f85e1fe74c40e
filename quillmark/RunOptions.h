#pragma once

#include "quillmark/Arguments.h"

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

}  // namespace quillmark
