#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "QuillmarkKit/model/TagField.h"

/// The frames that contain the fields by the ID3v2 standards.
namespace QuillmarkKit::FieldFrames {

/// The identifiers of the frames that the fields are written as (ID3v2.3.0 §4), in the order of the fields.
inline constexpr std::array<std::string_view, tagFieldCount> identifiers{
    "TIT2", "TPE1", "TALB", "TPE2", "TCOM", "TPE3", "TIT1", "TPUB", "TCOP", "TEXT", "TIT3", "TENC",
    "TKEY", "TOWN", "TCON", "COMM", "USLT", "TYER", "TBPM", "TRCK", "TRCK", "TPOS", "TPOS", "APIC",
};

/// The identifiers of the frames that contain a date: the date of v2.4, and the year, the day and month, and
/// the time of v2.3.
inline constexpr std::array<std::string_view, 4> dateIdentifiers{"TDRC", "TYER", "TDAT", "TIME"};

constexpr std::string_view identifierOf(TagField field) {
  return identifiers[static_cast<std::size_t>(field)];
}

constexpr bool isOfTheDate(std::string_view identifier) {
  return std::ranges::count(dateIdentifiers, identifier) != 0;
}

/// Returns whether frames with this identifier contain a field.
constexpr bool areOfAField(std::string_view identifier) {
  return std::ranges::count(identifiers, identifier) != 0;
}

/// Returns whether the field is read from frames with this identifier and replaced in them.
constexpr bool isOf(TagField field, std::string_view identifier) {
  return field == TagField::year ? isOfTheDate(identifier) : identifier == identifierOf(field);
}

}  // namespace QuillmarkKit::FieldFrames
