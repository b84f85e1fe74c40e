#pragma once

#include <cstdint>

namespace ID3TagEditor {

/// The kinds of frame that the engine knows on disk. `invalid` stands for every identifier that the tag's
/// version does not know.
enum class FrameType : std::uint8_t {
  title,
  artist,
  composer,
  conductor,
  contentGrouping,
  copyright,
  encodedBy,
  encoderSettings,
  fileOwner,
  lyricist,
  mixArtist,
  publisher,
  subtitle,
  album,
  attachedPicture,
  recordingDayMonth,
  recordingYear,
  recordingHourMinute,
  recordingDateTime,
  genre,
  trackPosition,
  initialKey,
  discPosition,
  albumArtist,
  beatsPerMinute,
  originalFilename,
  lengthInMilliseconds,
  sizeInBytes,
  unsyncronisedLyrics,
  comment,
  iTunesGrouping,
  iTunesMovementName,
  iTunesMovementIndex,
  iTunesMovementCount,
  iTunesPodcastCategory,
  iTunesPodcastDescription,
  iTunesPodcastID,
  iTunesPodcastKeywords,
  invalid,
};

}  // namespace ID3TagEditor
