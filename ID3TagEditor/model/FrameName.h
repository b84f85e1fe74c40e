#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "ID3TagEditor/model/ID3FrameContentLanguage.h"
#include "ID3TagEditor/model/ID3PictureType.h"

namespace ID3TagEditor {

/// What a frame means to the caller: the key of a tag's frames. A tag holds one picture for each picture
/// type, and one lyrics and one comment frame for each language; every other name stands for one frame.
class FrameName {
 public:
  // clang-format off
  enum Kind : std::uint8_t {
    title, album, albumArtist, artist, composer, conductor, contentGrouping, copyright, encodedBy,
    encoderSettings, fileOwner, lyricist, mixArtist, publisher, subtitle, beatsPerMinute, originalFilename,
    lengthInMilliseconds, sizeInBytes, genre, discPosition, trackPosition, initialKey, recordingDayMonth,
    recordingYear, recordingHourMinute, recordingDateTime, iTunesGrouping, iTunesMovementName,
    iTunesMovementIndex, iTunesMovementCount, iTunesPodcastCategory, iTunesPodcastDescription, iTunesPodcastID,
    iTunesPodcastKeywords,
    // One name for each picture type, and for each language.
    pictureKind, lyricsKind, commentKind,
  };
  // clang-format on
  static constexpr Kind lastKind = commentKind;

  /// Of the last three kinds this is the name of the first picture type or language.
  constexpr FrameName(Kind kind) : kind_(kind) {}
  static constexpr FrameName attachedPicture(ID3PictureType type) {
    return {pictureKind, static_cast<std::uint16_t>(type)};
  }
  static constexpr FrameName unsynchronizedLyrics(ID3FrameContentLanguage language) {
    return localized(lyricsKind, language);
  }
  static constexpr FrameName comment(ID3FrameContentLanguage language) {
    return localized(commentKind, language);
  }
  /// The lyrics or the comment, as `kind` tells, of the language.
  static constexpr FrameName localized(Kind kind, ID3FrameContentLanguage language) {
    return {kind, static_cast<std::uint16_t>(language)};
  }

  constexpr Kind kind() const { return kind_; }
  /// Nothing but for a picture.
  constexpr std::optional<ID3PictureType> pictureType() const {
    return kind_ == pictureKind ? std::optional(static_cast<ID3PictureType>(payload_)) : std::nullopt;
  }
  /// Nothing but for lyrics and comments.
  constexpr std::optional<ID3FrameContentLanguage> language() const {
    const bool isLocalized = kind_ == lyricsKind || kind_ == commentKind;
    return isLocalized ? std::optional(static_cast<ID3FrameContentLanguage>(payload_)) : std::nullopt;
  }

  /// The plain names but for beatsPerMinute, originalFilename, lengthInMilliseconds and sizeInBytes, then the
  /// lyrics and then the comment of every language.
  static std::vector<FrameName> allCases();

  /// Names with a payload stand together, in the order of their payload's cases.
  friend constexpr auto operator<=>(const FrameName&,
                                    const FrameName&) = default;  // NOLINT(modernize-use-nullptr)

 private:
  friend struct std::hash<FrameName>;

  constexpr FrameName(Kind kind, std::uint16_t payload) : kind_(kind), payload_(payload) {}

  Kind kind_;
  std::uint16_t payload_ = 0;
};

}  // namespace ID3TagEditor

template <>
struct std::hash<ID3TagEditor::FrameName> {
  std::size_t operator()(const ID3TagEditor::FrameName& name) const noexcept {
    return std::size_t{name.kind_} << 16 | name.payload_;
  }
};
