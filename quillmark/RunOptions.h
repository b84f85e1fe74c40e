#pragma once

#include "quillmark/Arguments.h"

namespace quillmark {

/// How paste, apply and set go about their files, and what they tell of them.
struct RunOptions {
  explicit RunOptions(const Arguments& arguments)
      : dryRun(arguments.has(options::dryRun)),
        diff(arguments.has(options::diff)),
        paths(arguments.has(options::paths)) {}

  bool dryRun;
  /// Whether the report tells what changes in a file, field by field.
  bool diff;
  /// Whether the report names files as they were given, not by their last path component.
  bool paths;
};

}  // namespace quillmark
