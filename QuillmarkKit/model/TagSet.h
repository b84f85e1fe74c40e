#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "QuillmarkKit/model/Artwork.h"
#include "QuillmarkKit/model/TagField.h"

namespace QuillmarkKit {

/// One value for each field, absent if the file has none. Texts must be UTF-8; the caller must ensure this.
struct TagSet {
  using Text = std::optional<std::string>;
  using Number = std::optional<std::int64_t>;

  Text title;
  Text artist;
  Text album;
  Text albumArtist;
  Text composer;
  Text conductor;
  Text grouping;
  Text publisher;
  Text copyright;
  Text lyricist;
  Text subtitle;
  Text encodedBy;
  Text initialKey;
  Text fileOwner;
  Text genre;
  Text comment;
  Text lyrics;
  Number year;
  Number bpm;
  Number trackNumber;
  Number trackTotal;
  Number discNumber;
  Number discTotal;
  std::optional<Artwork> artwork;

  /// Returns the field's value for people: the text, the number in decimal, or "JPEG, 48213 bytes". Returns
  /// nothing if the field is absent.
  std::optional<std::string> value(TagField field) const;
  /// Returns the fields that have a value.
  TagFields populatedFields() const;
  bool isEmpty() const { return *this == TagSet(); }
  /// Returns the fields whose values differ, including those that only one of the two has.
  TagFields differing(const TagSet& other) const;
  /// Returns a copy with the given fields as in `other`; those that are absent there are removed.
  TagSet merging(const TagSet& other, TagFields fields) const;
  /// Returns a copy with each text trimmed at both ends, first of white space, then of U+0000. Texts that are
  /// empty after that are absent.
  TagSet normalized() const;
  /// Like `normalized`, but changes this tag set, without a copy of the texts.
  void normalize();
  /// The fields that identify a track.
  static constexpr std::array summaryFields{
      TagField::title, TagField::artist,      TagField::album,      TagField::albumArtist, TagField::genre,
      TagField::year,  TagField::trackNumber, TagField::discNumber, TagField::artwork,
  };
  /// Returns a line for each of `summaryFields` that has a value, or "No tags".
  std::string summary() const;

  bool operator==(const TagSet&) const = default;
};

}  // namespace QuillmarkKit
