#pragma once

#include <string>

namespace quillmark {

/// What the tool is for and how it is called, without a line feed at the end.
std::string usageText();

}  // namespace quillmark
