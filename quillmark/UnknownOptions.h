#pragma once

#include <string>
#include <string_view>

#include "quillmark/Options.h"

namespace quillmark {

/// A note about a word that starts with two hyphens and is no option of the command; where it looks like one,
/// the note says which. `name` is the word without its hyphens.
std::string unknownOptionNote(const CommandOptions& command, std::string_view name);

}  // namespace quillmark
