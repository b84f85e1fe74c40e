#pragma once

#include <string_view>

#include "quillmark/Arguments.h"
#include "quillmark/WriteRun.h"

namespace quillmark {

/// Returns the run that writes the tags in a document in the form of `read --json`. `word` names the
/// document's file, "-" is standard input. Throws CLIError for a mistake in the document, for two of its
/// members that name the same file, and for files or fields on the command line; and FileError if the
/// document cannot be read.
WriteRun prepareFromDocument(std::string_view word, const Arguments& arguments);

}  // namespace quillmark
