#pragma once

#include "quillmark/Arguments.h"
#include "quillmark/Console.h"
#include "quillmark/WriteRun.h"

// The commands. An exception that they throw means status 1.
namespace quillmark {

/// Prints the tags of files and returns the exit status, as do the next two.
int commandRead(const Arguments& arguments, Console& console);
/// Puts one file's tags on the clipboard.
int commandCopy(const Arguments& arguments, Console& console);
/// Lists the names of the fields.
int commandFields(Console& console);

/// Returns the run that writes the tags on the clipboard.
WriteRun preparePaste(const Arguments& arguments, Console& console);
/// Returns the run that writes the tags of one file.
WriteRun prepareApply(const Arguments& arguments, Console& console);
/// Returns the run that writes the given values.
WriteRun prepareSet(const Arguments& arguments, Console& console);

}  // namespace quillmark
