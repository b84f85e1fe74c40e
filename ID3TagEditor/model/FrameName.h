#pragma once

#include <compare>
#include <cstdint>
#include <vector>

#include "ID3TagEditor/model/ID3FrameContentLanguage.h"
#include "ID3TagEditor/model/ID3PictureType.h"

namespace ID3TagEditor {

/// What a frame means to the caller: the key of a tag's frames. A tag holds one picture for each picture
/// type, and one lyrics and one comment frame for each language; every other name stands for one frame.
class FrameName {
 public:
  // clang-format off
  enum Plain : std::uint8_t {
    title, album, albumArtist, artist, composer, conductor, contentGrouping, copyright, encodedBy,
    encoderSettings, fileOwner, lyricist, mixArtist, publisher, subtitle, beatsPerMinute, originalFilename,
    lengthInMilliseconds, sizeInBytes, genre, discPosition, trackPosition, initialKey, recordingDayMonth,
    recordingYear, recordingHourMinute, recordingDateTime, iTunesGrouping, iTunesMovementName,
    iTunesMovementIndex, iTunesMovementCount, iTunesPodcastCategory, iTunesPodcastDescription, iTunesPodcastID,
    iTunesPodcastKeywords,
  };
  // clang-format on

  constexpr FrameName(Plain name) : kind_(name) {}
  static constexpr FrameName attachedPicture(ID3PictureType type) {
    return {pictureKind, static_cast<std::uint16_t>(type)};
  }
  static constexpr FrameName unsynchronizedLyrics(ID3FrameContentLanguage language) {
    return {lyricsKind, static_cast<std::uint16_t>(language)};
  }
  static constexpr FrameName comment(ID3FrameContentLanguage language) {
    return {commentKind, static_cast<std::uint16_t>(language)};
  }

  /// The plain names but for beatsPerMinute, originalFilename, lengthInMilliseconds and sizeInBytes, then the
  /// lyrics and then the comment of every language.
  static std::vector<FrameName> allCases();

  /// Names with a payload stand together, in the order of their payload's cases.
  friend constexpr auto operator<=>(const FrameName&,
                                    const FrameName&) = default;  // NOLINT(modernize-use-nullptr)

 private:
  static constexpr std::uint8_t pictureKind = iTunesPodcastKeywords + 1;
  static constexpr std::uint8_t lyricsKind = pictureKind + 1;
  static constexpr std::uint8_t commentKind = lyricsKind + 1;

  constexpr FrameName(std::uint8_t kind, std::uint16_t payload) : kind_(kind), payload_(payload) {}

  std::uint8_t kind_;
  std::uint16_t payload_ = 0;
};

}  // namespace ID3TagEditor
