#pragma once

#include <optional>
#include <string>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagSet.h"

/// Converts tags to fields and back by the ID3v2 standards. Frames that belong to no field are never changed.
namespace QuillmarkKit::LosslessConversion {

/// Returns the fields of the tag, normalised. Several values of a text are separated by U+0000.
TagSet fieldsOf(const ID3v2::Tag& tag);

/// Returns the frame that the comment, the lyrics or the artwork is read from. Returns nullptr if there is
/// none, and for other fields.
const ID3v2::Frame* shownFrameOf(const ID3v2::Tag& tag, TagField field);

/// Sets the selected fields to their values in `wanted` and removes absent ones. Only frames of these fields
/// change, and they keep their places. New frames are added at the end, except that a front cover is inserted
/// before other pictures.
void setFields(ID3v2::Tag& tag, const TagSet& wanted, TagFields selected);

/// Returns whether the picture that the artwork is read from stays in the tag when new artwork is set.
bool keepsShownPicture(const ID3v2::Tag& tag);

/// Returns the tag set as it would be read from a tag that it was written into: the genre "17" becomes
/// "Rock", and a year of five digits is cut off after four.
TagSet asRead(const TagSet& tags);

/// Data of a field that no field value can represent. With neither a picture nor a text, it cannot be read.
struct Unrepresentable {
  /// A picture of another format than JPEG and PNG.
  const ID3v2::Picture* picture = nullptr;
  /// A text that is not a number, such as the disc number "A".
  std::string text = {};
};
/// Returns such data that the tag has for the field. Returns nothing if there is none or the field has a
/// value. `values` must be the fields of the tag.
std::optional<Unrepresentable> unrepresentableValue(const ID3v2::Tag& tag, const TagSet& values,
                                                    TagField field);

/// Returns whether the field's frame cannot be read and also contains a field that is not among `fields`, as
/// a track number and its total are in one frame.
bool sharesUnreadFrame(const ID3v2::Tag& tag, TagField field, TagFields fields);

}  // namespace QuillmarkKit::LosslessConversion
