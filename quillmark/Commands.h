#pragma once

#include "quillmark/Arguments.h"
#include "quillmark/Console.h"
#include "quillmark/WriteRun.h"

// The commands. Errors that escape mean status 1.
namespace quillmark {

/// Lists the tags of files, or prints them as JSON. Gives the exit status, as the two below.
int commandRead(const Arguments& arguments, Console& console);
/// Puts one file's tags on the pasteboard.
int commandCopy(const Arguments& arguments, Console& console);
/// Lists the names of the fields.
int commandFields(Console& console);

/// What is to be written for the tags on the pasteboard.
WriteRun preparePaste(const Arguments& arguments, Console& console);
/// What is to be written for the tags of one file.
WriteRun prepareApply(const Arguments& arguments, Console& console);
/// What is to be written for given values.
WriteRun prepareSet(const Arguments& arguments, Console& console);

}  // namespace quillmark
