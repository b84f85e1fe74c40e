#pragma once

#include <ranges>

#include "platform/Paths.h"
#include "quillmark/Arguments.h"
#include "quillmark/CLIError.h"

namespace quillmark {

/// The files that the words name, in their order; each location is made when it is asked for, so that ten
/// thousand files take no more memory than their names. Throws CLIError when there are no words.
inline auto urls(Words from) {
  if (from.empty()) throw CLIError::noFiles();
  return from | std::views::transform(platform::fileLocation);
}

}  // namespace quillmark
