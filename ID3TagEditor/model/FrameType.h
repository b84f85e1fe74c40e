#pragma once

#include <array>
#include <cstdint>
#include <string_view>

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

/// One row of the identifier table (ID3v2.2.0 §4, ID3v2.3.0 §4, ID3v2.4.0 frames §4): the identifier in v2.2,
/// v2.3 and v2.4, empty where the version has none.
struct FrameTypeRow {
  FrameType type;
  std::string_view rawValue;
  std::array<std::string_view, 3> identifiers;
};

/// In declaration order.
inline constexpr std::array<FrameTypeRow, 39> frameTypeTable{{
    {FrameType::title, "title", {"TT2", "TIT2", "TIT2"}},
    {FrameType::artist, "artist", {"TP1", "TPE1", "TPE1"}},
    {FrameType::composer, "composer", {"TCM", "TCOM", "TCOM"}},
    {FrameType::conductor, "conductor", {"TP3", "TPE3", "TPE3"}},
    {FrameType::contentGrouping, "contentGrouping", {"TT1", "TIT1", "TIT1"}},
    {FrameType::copyright, "copyright", {"TCR", "TCOP", "TCOP"}},
    {FrameType::encodedBy, "encodedBy", {"TEN", "TENC", "TENC"}},
    {FrameType::encoderSettings, "encoderSettings", {"TSS", "TSSE", "TSSE"}},
    {FrameType::fileOwner, "fileOwner", {"", "TOWN", "TOWN"}},
    {FrameType::lyricist, "lyricist", {"TXT", "TEXT", "TEXT"}},
    {FrameType::mixArtist, "mixArtist", {"TP4", "TPE4", "TPE4"}},
    {FrameType::publisher, "publisher", {"TPB", "TPUB", "TPUB"}},
    {FrameType::subtitle, "subtitle", {"TT3", "TIT3", "TIT3"}},
    {FrameType::album, "album", {"TAL", "TALB", "TALB"}},
    {FrameType::attachedPicture, "artwork", {"PIC", "APIC", "APIC"}},
    {FrameType::recordingDayMonth, "recordingDayMonth", {"TDA", "TDAT", ""}},
    {FrameType::recordingYear, "recordingYear", {"TYE", "TYER", ""}},
    {FrameType::recordingHourMinute, "recordingHourMinute", {"TIM", "TIME", ""}},
    {FrameType::recordingDateTime, "recodingDateTime", {"", "", "TDRC"}},
    {FrameType::genre, "genre", {"TCO", "TCON", "TCON"}},
    {FrameType::trackPosition, "trackPosition", {"TRK", "TRCK", "TRCK"}},
    {FrameType::initialKey, "initialKey", {"TKE", "TKEY", "TKEY"}},
    {FrameType::discPosition, "discPosition", {"TPA", "TPOS", "TPOS"}},
    {FrameType::albumArtist, "albumArtist", {"TP2", "TPE2", "TPE2"}},
    {FrameType::beatsPerMinute, "beatsPerMinute", {"TBP", "TBPM", "TBPM"}},
    {FrameType::originalFilename, "originalFilename", {"TOF", "TOFN", "TOFN"}},
    {FrameType::lengthInMilliseconds, "lengthInMilliseconds", {"TLE", "TLEN", "TLEN"}},
    {FrameType::sizeInBytes, "sizeInBytes", {"TSI", "TSIZ", ""}},
    {FrameType::unsyncronisedLyrics, "unsyncronisedLyrics", {"ULT", "USLT", "USLT"}},
    {FrameType::comment, "comment", {"COM", "COMM", "COMM"}},
    {FrameType::iTunesGrouping, "iTunesGrouping", {"", "GRP1", "GRP1"}},
    {FrameType::iTunesMovementName, "iTunesMovementName", {"", "MVNM", "MVNM"}},
    {FrameType::iTunesMovementIndex, "iTunesMovementIndex", {"", "MVIN", "MVIN"}},
    {FrameType::iTunesMovementCount, "iTunesMovementCount", {"", "MVCN", "MVCN"}},
    {FrameType::iTunesPodcastCategory, "iTunesPodcastCategory", {"", "TCAT", "TCAT"}},
    {FrameType::iTunesPodcastDescription, "iTunesPodcastDescription", {"", "TDES", "TDES"}},
    {FrameType::iTunesPodcastID, "iTunesPodcastID", {"", "TGID", "TGID"}},
    {FrameType::iTunesPodcastKeywords, "iTunesPodcastKeywords", {"", "TKWD", "TKWD"}},
    {FrameType::invalid, "", {"", "", ""}},
}};

static_assert([] {
  for (std::size_t i = 0; i < frameTypeTable.size(); ++i) {
    if (static_cast<std::size_t>(frameTypeTable[i].type) != i) return false;
  }
  return true;
}());

constexpr std::string_view rawValue(FrameType type) {
  return frameTypeTable[static_cast<std::size_t>(type)].rawValue;
}

}  // namespace ID3TagEditor
