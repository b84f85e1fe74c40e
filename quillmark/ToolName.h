#pragma once

#include <string_view>

namespace quillmark {

/// The tool's name in everything that it prints, even if it was started under another name.
inline constexpr std::string_view toolName = "quillmark";

}  // namespace quillmark
