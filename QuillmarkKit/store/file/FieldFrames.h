#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "QuillmarkKit/model/TagField.h"

/// The frames that the fields are kept in, by the ID3v2 standards.
namespace QuillmarkKit::FieldFrames {

/// The frame that a field's value is written as (ID3v2.3.0 §4), in the order of the fields.
inline constexpr std::array<std::string_view, tagFieldCount> identifiers{
    "TIT2", "TPE1", "TALB", "TPE2", "TCOM", "TPE3", "TIT1", "TPUB", "TCOP", "TEXT", "TIT3", "TENC",
    "TKEY", "TOWN", "TCON", "COMM", "USLT", "TYER", "TBPM", "TRCK", "TRCK", "TPOS", "TPOS", "APIC",
};

/// The frames that contain a date: that of v2.4, or the year, the day and month, and the time.
inline constexpr std::array<std::string_view, 4> dateIdentifiers{"TDRC", "TYER", "TDAT", "TIME"};

constexpr std::string_view identifierOf(TagField field) {
  return identifiers[static_cast<std::size_t>(field)];
}

constexpr bool isOfTheDate(std::string_view identifier) {
  return std::ranges::count(dateIdentifiers, identifier) != 0;
}

/// Returns whether a field is kept in frames of this identifier.
constexpr bool areOfAField(std::string_view identifier) {
  return std::ranges::count(identifiers, identifier) != 0;
}

/// Returns whether a field's value is read from such frames and replaced in them.
constexpr bool isOf(TagField field, std::string_view identifier) {
  return field == TagField::year ? isOfTheDate(identifier) : identifier == identifierOf(field);
}

}  // namespace QuillmarkKit::FieldFrames
