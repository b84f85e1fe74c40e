#pragma once

#include <string>
#include <vector>

#include "quillmark/Arguments.h"

namespace quillmark {

/// Returns the purpose of the tool and the forms of its commands, without a line feed at the end.
std::string usageText();

/// Returns a command's purpose, its options and one example, in lines that end in a line feed.
std::string helpText(const CommandOptions& command);

/// Returns the notes that follow the usage text at a terminal.
std::vector<std::string> furtherHelp();

}  // namespace quillmark
