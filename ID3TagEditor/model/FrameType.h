#pragma once

#include <cstdint>

namespace ID3TagEditor {

/// The kinds of frame that the engine can read and write. `invalid` represents all identifiers that are
/// unknown in the tag's version.
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
