#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagField.h"

/// Parts of a tag in words, for messages of one line.
namespace QuillmarkKit::TagDescriptions {

/// The text between quotation marks, on one line, its values with " / " between them, what is beyond 60
/// characters as "…".
std::string inQuotes(std::string_view text);

/// "front cover", by its number in the frame.
std::string_view pictureType(std::uint8_t number);
/// "front cover, JPEG, 48213 bytes".
std::string describe(const ID3v2::Picture& picture);

/// What people call the frames of that identifier, such as "title" or, where it has no name, "TSOP".
std::string nameOf(std::string_view identifier);

}  // namespace QuillmarkKit::TagDescriptions
