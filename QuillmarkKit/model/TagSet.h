#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "QuillmarkKit/model/Artwork.h"
#include "QuillmarkKit/model/TagField.h"

namespace QuillmarkKit {

/// One value for each field, absent if the file has none. Texts are UTF-8; the caller must ensure this.
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

  /// The field's value as people read it: the text, the number in decimal, or "JPEG, 48213 bytes".
  std::optional<std::string> value(TagField field) const;
  /// The fields that have a value.
  TagFields populatedFields() const;
  bool isEmpty() const { return *this == TagSet(); }
  /// The fields that `other` has another value for, or none.
  TagFields differing(const TagSet& other) const;
  /// Returns this tag set with the given fields as `other` has them; those that are absent there are removed.
  TagSet merging(const TagSet& other, TagFields fields) const;
  /// This tag set with its texts trimmed of white space and then of U+0000 at both ends, empty ones made
  /// absent.
  TagSet normalized() const;
  /// The same in its place, without a copy of the texts.
  void normalize();
  /// The fields that tell a track from others.
  static constexpr std::array summaryFields{
      TagField::title, TagField::artist,      TagField::album,      TagField::albumArtist, TagField::genre,
      TagField::year,  TagField::trackNumber, TagField::discNumber, TagField::artwork,
  };
  /// These, a line each, or "No tags".
  std::string summary() const;

  bool operator==(const TagSet&) const = default;
};

}  // namespace QuillmarkKit
