#pragma once

#include <string_view>

#include "QuillmarkKit/store/TagStore.h"
#include "quillmark/Console.h"
#include "quillmark/FileList.h"

namespace quillmark {

/// Writes the artwork of the only file in `files`, byte for byte, to the file that the word `to` names, or to
/// standard output for "-". A file that is there is replaced in one step. Throws CLIError if there are
/// several files, if the MP3 has no artwork, or if `to` is a terminal or names an MP3; and what reading the
/// MP3 or writing the picture throws. Nothing has been written then.
void saveArtwork(const FileList& files, std::string_view to, const QuillmarkKit::TagStore& store,
                 Console& console);

}  // namespace quillmark
