#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/EnumerationTable.h"

namespace QuillmarkKit {

struct TagSet;

/// The parts of a tag that people see and edit, in the order of listings: 17 texts, 6 numbers and the
/// picture.
enum class TagField : std::uint8_t {
  title,
  artist,
  album,
  albumArtist,
  composer,
  conductor,
  grouping,
  publisher,
  copyright,
  lyricist,
  subtitle,
  encodedBy,
  initialKey,
  fileOwner,
  genre,
  comment,
  lyrics,
  year,
  bpm,
  trackNumber,
  trackTotal,
  discNumber,
  discTotal,
  artwork,
};

inline constexpr std::size_t tagFieldCount = static_cast<std::size_t>(TagField::artwork) + 1;

inline constexpr auto allTagFields = platform::everyCase<TagField, tagFieldCount>();

/// Returns the case's name, as in JSON: "albumArtist".
std::string_view rawValue(TagField field);
/// Returns the name on the command line: "album-artist".
std::string_view cliName(TagField field);
/// Returns the label in listings: "Album Artist".
std::string_view displayName(TagField field);
/// Returns the name within a sentence: "album artist".
std::string nameInSentence(TagField field);

/// Returns the field with exactly this raw value, or nothing if there is none.
std::optional<TagField> fieldFromRawValue(std::string_view raw);
/// Returns the field with this raw value or command-line name, or nothing if there is none. Ignores extra
/// hyphens. Case matters, except in the first letter of the second and later words.
std::optional<TagField> fieldFromCliName(std::string_view name);

/// Returns the identifier of the frame that the field is written as (ID3v2.3.0 §4). A number and its total
/// share a frame.
std::string_view frameIdentifier(TagField field);
/// Returns whether frames with this identifier contain a part of the date: the date of v2.4, or the year, the
/// day and month, or the time of v2.3.
bool isDateFrame(std::string_view identifier);
/// Returns whether fields are written as frames with this identifier.
bool isFieldFrame(std::string_view identifier);
/// Returns whether the field is read from frames with this identifier and replaced in them.
bool isFrameOf(TagField field, std::string_view identifier);

using TextMember = std::optional<std::string> TagSet::*;
using NumberMember = std::optional<std::int64_t> TagSet::*;

/// Returns the member of TagSet that holds the field, or nullptr if the field is not a text.
TextMember stringKeyPath(TagField field);
/// Returns the member of TagSet that holds the field, or nullptr if the field is not a number.
NumberMember integerKeyPath(TagField field);

/// Calls the operation for the kind of the field and returns its result. `onText` and `onNumber` receive the
/// member of TagSet that holds the field.
template <class OnText, class OnNumber, class OnPicture>
decltype(auto) dispatch(TagField field, OnText onText, OnNumber onNumber, OnPicture onPicture) {
  if (const TextMember text = stringKeyPath(field)) return onText(text);
  if (const NumberMember number = integerKeyPath(field)) return onNumber(number);
  return onPicture();
}

/// A set of fields.
class TagFields {
 public:
  constexpr TagFields() = default;
  constexpr TagFields(std::initializer_list<TagField> fields) {
    for (const TagField field : fields) insert(field);
  }

  constexpr void insert(TagField field) { bits_ |= bitOf(field); }
  constexpr void insert(TagFields fields) { bits_ |= fields.bits_; }
  constexpr bool contains(TagField field) const { return (bits_ & bitOf(field)) != 0; }
  constexpr bool isEmpty() const { return bits_ == 0; }
  constexpr TagFields without(TagFields others) const {
    TagFields rest;
    rest.bits_ = bits_ & ~others.bits_;
    return rest;
  }
  /// Returns the fields that are in both.
  constexpr TagFields intersection(TagFields others) const {
    TagFields common;
    common.bits_ = bits_ & others.bits_;
    return common;
  }
  bool operator==(const TagFields&) const = default;

  static const TagFields all;
  /// The fields that all tracks of an album have in common.
  static const TagFields albumIdentity;

 private:
  using Bits = std::uint32_t;
  static_assert(tagFieldCount <= std::numeric_limits<Bits>::digits);
  static constexpr Bits bitOf(TagField field) { return Bits{1} << static_cast<unsigned>(field); }

  Bits bits_ = 0;
};

inline constexpr TagFields TagFields::all = [] {
  TagFields fields;
  for (const TagField field : allTagFields) fields.insert(field);
  return fields;
}();

inline constexpr TagFields TagFields::albumIdentity{
    TagField::album,     TagField::albumArtist, TagField::artist,    TagField::genre,
    TagField::year,      TagField::discNumber,  TagField::discTotal, TagField::trackTotal,
    TagField::publisher, TagField::copyright,   TagField::artwork,
};

}  // namespace QuillmarkKit
