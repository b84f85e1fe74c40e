#pragma once

#include "quillmark/Arguments.h"

namespace quillmark {

/// How paste, apply and set go about their files, and what they tell of them.
struct RunOptions {
  explicit RunOptions(const Arguments& arguments) : dryRun(arguments.has(options::dryRun)) {}

  bool dryRun;
};

}  // namespace quillmark
