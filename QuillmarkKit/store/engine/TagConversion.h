#pragma once

#include "ID3TagEditor/model/ID3Tag.h"
#include "QuillmarkKit/model/TagSet.h"

namespace QuillmarkKit {

/// The fields that the tag holds, normalised. A tag set holds one comment, one lyrics text and one picture,
/// the front cover if there is one.
TagSet tagSetFrom(const ID3TagEditor::ID3Tag& tag);

/// An ID3v2.3 tag that holds the tag set. A total without its number has no place in it.
ID3TagEditor::ID3Tag makeTag(const TagSet& from);

}  // namespace QuillmarkKit
