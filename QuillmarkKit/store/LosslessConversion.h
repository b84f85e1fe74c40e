#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagSet.h"

/// A tag as the ID3v2 standards mean it, to and from the fields of a tag set. Frames that no field is read
/// from stay as they are whatever happens here.
namespace QuillmarkKit::LosslessConversion {

/// The fields that the tag holds, normalised. Several values of a text stand with U+0000 between them.
TagSet fieldsOf(const ID3v2::Tag& tag);

/// Gives the selected fields the values that they have in `wanted`; absent ones go. Only frames of these
/// fields change, each in its place, and what is new stands behind.
void setFields(ID3v2::Tag& tag, const TagSet& wanted, TagFields selected);

/// The tag set as a tag holds it: a genre "17" is the genre Rock, and a year of five digits has no place.
TagSet heldForm(const TagSet& tags);

/// What the tag says about a field in a way that the field's value cannot say, such as the picture of another
/// format or the disc "A"; nothing where the field has its value or the tag says nothing.
std::optional<std::string> uncarried(const ID3v2::Tag& tag, TagField field);

/// Whether the field shares a frame that cannot be read with one that is not among `fields`, and would go
/// with it.
bool sharesUnreadFrame(const ID3v2::Tag& tag, TagField field, TagFields fields);

/// The kind of value that the field takes, as in "expected a number".
std::string_view expectedValue(TagField field);

}  // namespace QuillmarkKit::LosslessConversion
