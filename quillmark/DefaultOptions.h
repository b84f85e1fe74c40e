#pragma once

#include <string_view>
#include <vector>

namespace quillmark {

/// Returns the names of the options in the environment variable QUILLMARK_OPTIONS, without their hyphens.
/// Throws CLIError for a word that is not an option of any command, and for an option that takes a value.
std::vector<std::string_view> defaultOptions();

}  // namespace quillmark
