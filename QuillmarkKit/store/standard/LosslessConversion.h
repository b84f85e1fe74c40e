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

/// Gives the selected fields the values that they have in `wanted` and removes absent ones. Only frames of
/// these fields change, each in its place. New frames follow the others, except a front cover, which is put
/// in front of other pictures.
void setFields(ID3v2::Tag& tag, const TagSet& wanted, TagFields selected);

/// Returns whether the picture that the artwork is read from stays when another artwork is set.
bool keepsShownPicture(const ID3v2::Tag& tag);

/// Returns the tag set as it is read from a tag that it was written into: a genre "17" is the genre Rock, and
/// a year of five digits has no place.
TagSet asRead(const TagSet& tags);

/// Returns what the tag says about a field that no value of the field can say, such as a picture of another
/// format or the disc "A", or nothing if the field has a value or the tag says nothing. `values` are the
/// fields of the tag.
std::optional<std::string> uncarried(const ID3v2::Tag& tag, const TagSet& values, TagField field);

/// Returns whether the field shares a frame that cannot be read with a field that is not among `fields`.
bool sharesUnreadFrame(const ID3v2::Tag& tag, TagField field, TagFields fields);

/// The kind of value that the field takes, as in "expected a number".
std::string_view expectedValue(TagField field);

}  // namespace QuillmarkKit::LosslessConversion
