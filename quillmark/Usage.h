#pragma once

#include <string>
#include <vector>

#include "quillmark/Options.h"

namespace quillmark {

/// What the tool is for and how it is called, without a line feed at the end.
std::string usageText();

/// What one command is for, its options and one example, in lines that end in a line feed.
std::string helpText(const CommandOptions& command);

/// Returns the notes that follow the usage text at a terminal.
std::vector<std::string> furtherHelp();

}  // namespace quillmark
