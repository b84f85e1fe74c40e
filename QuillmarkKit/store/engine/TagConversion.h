#pragma once

#include "ID3TagEditor/model/ID3Tag.h"
#include "QuillmarkKit/model/TagSet.h"

namespace QuillmarkKit {

/// Returns the fields of the tag, normalised: one comment, one lyrics text and one picture, the front cover
/// if there is one.
TagSet tagSetFrom(const ID3TagEditor::ID3Tag& tag);

/// Returns an ID3v2.3 tag with the fields. Omits a total without its number, which no frame can contain.
ID3TagEditor::ID3Tag makeTag(const TagSet& from);

}  // namespace QuillmarkKit
