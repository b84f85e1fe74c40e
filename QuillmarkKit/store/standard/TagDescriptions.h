#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagField.h"

/// Describes parts of a tag for messages of one line.
namespace QuillmarkKit::TagDescriptions {

/// Returns the text in quotation marks, on one line, with " / " between its values and "…" in place of the
/// text after 60 characters.
std::string inQuotes(std::string_view text);

/// Returns the name of the picture type with this number, such as "front cover" for 3.
std::string_view pictureType(std::uint8_t number);
/// Returns a description such as "front cover, JPEG, 48213 bytes".
std::string describe(const ID3v2::Picture& picture);

/// Returns the name of the field that frames with this identifier contain, such as "title", or the identifier
/// itself if they contain none, such as "TSOP".
std::string nameOf(std::string_view identifier);

}  // namespace QuillmarkKit::TagDescriptions
