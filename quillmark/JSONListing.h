#pragma once

#include "QuillmarkKit/model/TagSetJSON.h"
#include "quillmark/Console.h"
#include "quillmark/FileList.h"
#include "quillmark/TagReader.h"

namespace quillmark {

/// Prints one JSON object with a member for each file, in ascending order of their names. Unless the reader
/// keeps going, prints nothing before all files have been read. Throws what the reader throws, and CLIError
/// if two files would have the same member.
void readAsJSON(const FileList& files, QuillmarkKit::ArtworkForm form, TagReader& reader, Console& console);

}  // namespace quillmark
