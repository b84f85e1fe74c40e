#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "ID3TagEditor/model/ID3FrameContentLanguage.h"
#include "ID3TagEditor/model/ID3PictureType.h"

namespace ID3TagEditor {

/// The meaning of a frame, which is the key of a tag's frames. A tag can have one picture for each picture
/// type, and one lyrics frame and one comment for each language. It can have one frame of every other name.
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
    // These have one name for each picture type or each language.
    pictureKind, lyricsKind, commentKind,
  };
  // clang-format on
  static constexpr Kind lastKind = commentKind;

  /// For the last three kinds, constructs the name of the first picture type or language.
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
  /// Returns the name of the lyrics or the comment in the language. `kind` must be `lyricsKind` or
  /// `commentKind`.
  static constexpr FrameName localized(Kind kind, ID3FrameContentLanguage language) {
    return {kind, static_cast<std::uint16_t>(language)};
  }

  constexpr Kind kind() const { return kind_; }
  /// Returns nothing if this is not the name of a picture.
  constexpr std::optional<ID3PictureType> pictureType() const {
    return kind_ == pictureKind ? std::optional(static_cast<ID3PictureType>(payload_)) : std::nullopt;
  }
  /// Returns nothing if this is not the name of lyrics or a comment.
  constexpr std::optional<ID3FrameContentLanguage> language() const {
    const bool isLocalized = kind_ == lyricsKind || kind_ == commentKind;
    return isLocalized ? std::optional(static_cast<ID3FrameContentLanguage>(payload_)) : std::nullopt;
  }

  /// Returns the names without picture type or language, except beatsPerMinute, originalFilename,
  /// lengthInMilliseconds and sizeInBytes, then the lyrics of every language, then the comments of every
  /// language.
  static std::vector<FrameName> allCases();

  /// Orders names by kind, then by picture type or language.
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
