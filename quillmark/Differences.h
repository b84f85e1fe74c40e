#pragma once

#include <string>

#include "QuillmarkKit/model/TagSet.h"

namespace quillmark {

/// Returns a change of tags for people: for each field that differs a line with its old value, a line with
/// its new value, or both. An artwork that stays beside the new one is marked. Long texts are shortened, and
/// control characters are made visible.
std::string differences(const QuillmarkKit::TagSet& before, const QuillmarkKit::TagSet& after,
                        bool keepsArtwork);

}  // namespace quillmark
