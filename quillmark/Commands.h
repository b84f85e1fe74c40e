#pragma once

#include "platform/StandardStreams.h"
#include "quillmark/Arguments.h"

// The commands. Each takes the words behind its own and gives the exit status; errors that escape mean
// status 1.
namespace quillmark {

using platform::StandardOutput;

/// Lists the tags of files, or prints them as JSON.
int commandRead(Words words, StandardOutput& output);
/// Puts one file's tags on the pasteboard.
int commandCopy(Words words, StandardOutput& output);
/// Writes the tags on the pasteboard into files.
int commandPaste(Words words, StandardOutput& output);
/// Writes one file's tags into others.
int commandApply(Words words, StandardOutput& output);
/// Writes given values into files.
int commandSet(Words words, StandardOutput& output);
/// Lists the names of the fields.
int commandFields(Words words, StandardOutput& output);

}  // namespace quillmark
