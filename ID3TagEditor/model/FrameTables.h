#pragma once

#include <algorithm>
#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "ID3TagEditor/model/Enumerations.h"

// The versions, the kinds of frame, their names, and the table of the kinds, `frameKinds`. The code that
// reads, writes, names and shows frames is driven by the rows of that table. The builders and the content
// reader have one function for each kind, which the compiler checks against the row.
namespace ID3TagEditor {

/// A major version of the format. The raw value is the version byte of the tag header (ID3v2.3.0 §3.1).
enum class ID3Version : std::uint8_t { version2 = 2, version3 = 3, version4 = 4 };

inline constexpr std::array<ID3Version, 3> allVersions{ID3Version::version2, ID3Version::version3,
                                                       ID3Version::version4};

constexpr std::uint8_t rawValue(ID3Version version) {
  return static_cast<std::uint8_t>(version);
}

constexpr std::optional<ID3Version> versionFromRawValue(std::uint8_t raw) {
  if (raw < 2 || raw > 4) return std::nullopt;
  return static_cast<ID3Version>(raw);
}

/// Returns the column of the version in the tables of this folder.
constexpr std::size_t columnOf(ID3Version version) {
  return static_cast<std::size_t>(rawValue(version)) - 2;
}

constexpr std::string_view caseName(ID3Version version) {
  constexpr std::array<std::string_view, 3> names{"version2", "version3", "version4"};
  return names[columnOf(version)];
}

/// The kinds of frame that the engine can read and write. `invalid` represents all identifiers that are
/// unknown in the tag's version.
// clang-format off
enum class FrameType : std::uint8_t {
  title, artist, composer, conductor, contentGrouping, copyright, encodedBy, encoderSettings, fileOwner,
  lyricist, mixArtist, publisher, subtitle, album, attachedPicture, recordingDayMonth, recordingYear,
  recordingHourMinute, recordingDateTime, genre, trackPosition, initialKey, discPosition, albumArtist,
  beatsPerMinute, originalFilename, lengthInMilliseconds, sizeInBytes, unsyncronisedLyrics, comment,
  iTunesGrouping, iTunesMovementName, iTunesMovementIndex, iTunesMovementCount, iTunesPodcastCategory,
  iTunesPodcastDescription, iTunesPodcastID, iTunesPodcastKeywords, invalid,
};
// clang-format on

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

/// The form of a frame's content. It decides the class of the frame object, and so how the frame is read,
/// written and shown.
enum class FrameContent : std::uint8_t {
  string,
  integer,
  partOfTotal,
  genre,
  dayMonth,
  hourMinute,
  dateTime,
  picture,
  localized,
};
inline constexpr FrameContent lastFrameContent = FrameContent::localized;

struct FrameKind {
  FrameType type;
  FrameName::Kind name;
  std::string_view rawValue;
  FrameContent content;
  /// The encoding in which the frame is written.
  ID3StringEncoding encoding;
  /// The identifiers in v2.2, v2.3 and v2.4 (ID3v2.2.0 §4, ID3v2.3.0 §4, ID3v2.4.0 frames §4). Empty if the
  /// version has none.
  std::array<std::string_view, 3> identifiers;
  /// The line of a tag's description that shows the frame, counted from 1; 0 if none does.
  std::size_t line;
  /// The label of that line, if it is not the raw value.
  std::string_view otherLabel = {};

  constexpr std::string_view identifierIn(ID3Version version) const { return identifiers[columnOf(version)]; }
  constexpr std::string_view label() const { return otherLabel.empty() ? rawValue : otherLabel; }
};

/// The rows are in the order in which the frames of a tag are written.
inline constexpr std::array frameKinds = [] {
  using Type = FrameType;
  using Name = FrameName;
  using enum FrameContent;
  constexpr auto Latin1 = ID3StringEncoding::ISO88591;
  constexpr auto UTF16 = ID3StringEncoding::UTF16;
  constexpr std::size_t notShown = 0;
  // clang-format off
  return std::to_array<FrameKind>({
      {Type::album, Name::album, "album", string, UTF16, {"TAL", "TALB", "TALB"}, 17},
      {Type::albumArtist, Name::albumArtist, "albumArtist", string, UTF16, {"TP2", "TPE2", "TPE2"}, 13},
      {Type::artist, Name::artist, "artist", string, UTF16, {"TP1", "TPE1", "TPE1"}, 1},
      {Type::title, Name::title, "title", string, UTF16, {"TT2", "TIT2", "TIT2"}, 14},
      {Type::genre, Name::genre, "genre", genre, Latin1, {"TCO", "TCON", "TCON"}, 22},
      {Type::trackPosition, Name::trackPosition, "trackPosition", partOfTotal, Latin1, {"TRK", "TRCK", "TRCK"}, 15},
      {Type::attachedPicture, Name::pictureKind, "artwork", picture, Latin1, {"PIC", "APIC", "APIC"}, 23, "attachedPicture"},
      {Type::composer, Name::composer, "composer", string, UTF16, {"TCM", "TCOM", "TCOM"}, 2},
      {Type::conductor, Name::conductor, "conductor", string, UTF16, {"TP3", "TPE3", "TPE3"}, 3},
      {Type::contentGrouping, Name::contentGrouping, "contentGrouping", string, UTF16, {"TT1", "TIT1", "TIT1"}, 4},
      {Type::copyright, Name::copyright, "copyright", string, UTF16, {"TCR", "TCOP", "TCOP"}, 5},
      {Type::encodedBy, Name::encodedBy, "encodedBy", string, UTF16, {"TEN", "TENC", "TENC"}, 6},
      {Type::encoderSettings, Name::encoderSettings, "encoderSettings", string, UTF16, {"TSS", "TSSE", "TSSE"}, 7},
      {Type::fileOwner, Name::fileOwner, "fileOwner", string, UTF16, {"", "TOWN", "TOWN"}, 8},
      {Type::lyricist, Name::lyricist, "lyricist", string, UTF16, {"TXT", "TEXT", "TEXT"}, 9},
      {Type::mixArtist, Name::mixArtist, "mixArtist", string, UTF16, {"TP4", "TPE4", "TPE4"}, 10},
      {Type::publisher, Name::publisher, "publisher", string, UTF16, {"TPB", "TPUB", "TPUB"}, 11},
      {Type::subtitle, Name::subtitle, "subtitle", string, UTF16, {"TT3", "TIT3", "TIT3"}, 12},
      {Type::initialKey, Name::initialKey, "initialKey", string, UTF16, {"TKE", "TKEY", "TKEY"}, notShown},
      {Type::beatsPerMinute, Name::beatsPerMinute, "beatsPerMinute", integer, Latin1, {"TBP", "TBPM", "TBPM"}, notShown},
      {Type::discPosition, Name::discPosition, "discPosition", partOfTotal, Latin1, {"TPA", "TPOS", "TPOS"}, 16},
      {Type::originalFilename, Name::originalFilename, "originalFilename", string, UTF16, {"TOF", "TOFN", "TOFN"}, notShown},
      {Type::lengthInMilliseconds, Name::lengthInMilliseconds, "lengthInMilliseconds", integer, Latin1, {"TLE", "TLEN", "TLEN"}, notShown},
      {Type::sizeInBytes, Name::sizeInBytes, "sizeInBytes", integer, Latin1, {"TSI", "TSIZ", ""}, notShown},
      {Type::unsyncronisedLyrics, Name::lyricsKind, "unsyncronisedLyrics", localized, UTF16, {"ULT", "USLT", "USLT"}, 24, "unsynchronisedLyrics"},
      {Type::comment, Name::commentKind, "comment", localized, UTF16, {"COM", "COMM", "COMM"}, 25, "comments"},
      {Type::recordingYear, Name::recordingYear, "recordingYear", integer, Latin1, {"TYE", "TYER", ""}, 19},
      {Type::recordingDayMonth, Name::recordingDayMonth, "recordingDayMonth", dayMonth, Latin1, {"TDA", "TDAT", ""}, 20},
      {Type::recordingHourMinute, Name::recordingHourMinute, "recordingHourMinute", hourMinute, Latin1, {"TIM", "TIME", ""}, 21},
      {Type::recordingDateTime, Name::recordingDateTime, "recodingDateTime", dateTime, Latin1, {"", "", "TDRC"}, 18, "recordingDateTime"},
      {Type::iTunesGrouping, Name::iTunesGrouping, "iTunesGrouping", string, UTF16, {"", "GRP1", "GRP1"}, 26},
      {Type::iTunesMovementName, Name::iTunesMovementName, "iTunesMovementName", string, UTF16, {"", "MVNM", "MVNM"}, 29},
      {Type::iTunesMovementIndex, Name::iTunesMovementIndex, "iTunesMovementIndex", integer, Latin1, {"", "MVIN", "MVIN"}, 27},
      {Type::iTunesMovementCount, Name::iTunesMovementCount, "iTunesMovementCount", integer, Latin1, {"", "MVCN", "MVCN"}, 28},
      {Type::iTunesPodcastCategory, Name::iTunesPodcastCategory, "iTunesPodcastCategory", string, UTF16, {"", "TCAT", "TCAT"}, 30},
      {Type::iTunesPodcastDescription, Name::iTunesPodcastDescription, "iTunesPodcastDescription", string, UTF16, {"", "TDES", "TDES"}, 31},
      {Type::iTunesPodcastID, Name::iTunesPodcastID, "iTunesPodcastID", string, UTF16, {"", "TGID", "TGID"}, 32},
      {Type::iTunesPodcastKeywords, Name::iTunesPodcastKeywords, "iTunesPodcastKeywords", string, UTF16, {"", "TKWD", "TKWD"}, 33},
  });
  // clang-format on
}();

namespace detail {

constexpr std::size_t noRow = frameKinds.size();

/// Returns, for each case of an enumeration that counts from 0, the row that has the case in `column`, or
/// `noRow`.
template <std::size_t count, class Case>
constexpr std::array<std::size_t, count> rowsBy(Case FrameKind::*column) {
  std::array<std::size_t, count> rows{};
  rows.fill(noRow);
  for (std::size_t row = 0; row < frameKinds.size(); ++row) {
    rows.at(static_cast<std::size_t>(frameKinds[row].*column)) = row;
  }
  return rows;
}

inline constexpr auto rowsByType = rowsBy<static_cast<std::size_t>(FrameType::invalid)>(&FrameKind::type);
inline constexpr auto rowsByName = rowsBy<FrameName::lastKind + 1>(&FrameKind::name);

constexpr bool isOneToOne(const auto& rows) {
  return rows.size() == frameKinds.size() && std::ranges::find(rows, noRow) == rows.end();
}
static_assert(isOneToOne(rowsByType), "each frame type but invalid has one row");
static_assert(isOneToOne(rowsByName), "each kind of frame name has one row");
static_assert(std::ranges::max(frameKinds, {}, &FrameKind::content).content == lastFrameContent,
              "the tables of contents have a row for each");

constexpr bool areIdentifiersSound() {
  for (const ID3Version version : allVersions) {
    const std::size_t size = version == ID3Version::version2 ? 3 : 4;
    for (const FrameKind& kind : frameKinds) {
      const std::string_view identifier = kind.identifierIn(version);
      if (identifier.empty()) continue;
      const auto isSame = [&](const FrameKind& other) { return other.identifierIn(version) == identifier; };
      if (identifier.size() != size || std::ranges::count_if(frameKinds, isSame) != 1) return false;
    }
  }
  return true;
}
static_assert(areIdentifiersSound(), "an identifier has its version's size and stands for one kind");

}  // namespace detail

/// Returns the row of the type, which must not be `invalid`.
constexpr const FrameKind& kindOf(FrameType type) {
  return frameKinds[detail::rowsByType[static_cast<std::size_t>(type)]];
}

constexpr const FrameKind& kindOf(FrameName::Kind name) {
  return frameKinds[detail::rowsByName[name]];
}

constexpr std::string_view rawValue(FrameType type) {
  return type == FrameType::invalid ? "" : kindOf(type).rawValue;
}

inline constexpr std::size_t localizedKindCount =
    static_cast<std::size_t>(std::ranges::count(frameKinds, FrameContent::localized, &FrameKind::content));

/// The kinds of which a tag can have one frame for each language in `allLanguages`, in the order in which
/// they are written.
inline constexpr std::array<FrameName::Kind, localizedKindCount> FrameNamesWithLocalizedContent = [] {
  std::array<FrameName::Kind, localizedKindCount> names{};
  std::size_t count = 0;
  for (const FrameKind& kind : frameKinds) {
    if (kind.content == FrameContent::localized) names[count++] = kind.name;
  }
  return names;
}();

inline std::vector<FrameName> FrameName::allCases() {
  std::vector<FrameName> cases;
  for (int kind = title; kind < pictureKind; ++kind) {
    if (kind < beatsPerMinute || kind > sizeInBytes) cases.emplace_back(static_cast<Kind>(kind));
  }
  for (const Kind kind : FrameNamesWithLocalizedContent) {
    for (const ID3FrameContentLanguage language : allLanguages) cases.push_back(localized(kind, language));
  }
  return cases;
}

}  // namespace ID3TagEditor

template <>
struct std::hash<ID3TagEditor::FrameName> {
  std::size_t operator()(const ID3TagEditor::FrameName& name) const noexcept {
    return std::size_t{name.kind_} << 16 | name.payload_;
  }
};
