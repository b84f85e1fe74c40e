#pragma once

#include <string>

#include "QuillmarkKit/model/TagSet.h"

namespace quillmark {

/// What a change of tags comes to, for people: for each field that differs a line with what it held, a line
/// with what it holds then, or one of the two. Long texts are shortened, and nothing in them commands a
/// terminal.
std::string differences(const QuillmarkKit::TagSet& before, const QuillmarkKit::TagSet& after);

}  // namespace quillmark
