#pragma once

#include <string_view>

namespace quillmark {

/// The tool's name in everything it prints, under whatever name it was started.
inline constexpr std::string_view toolName = "quillmark";

}  // namespace quillmark
