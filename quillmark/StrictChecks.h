#pragma once

#include "quillmark/Arguments.h"
#include "quillmark/FileList.h"

// The checks of --strict, which end a run before it writes anything.
namespace quillmark {

/// Throws CLIError for an option that the command does not have, and for a word that starts like an option
/// but names no file.
void requireKnownWords(const Arguments& arguments, const CommandOptions& command);

/// Throws what `read` would throw if one of the files is missing or is not an MP3: CLIError with a hint for a
/// folder.
void requireMP3Files(const FileList& files);

}  // namespace quillmark
