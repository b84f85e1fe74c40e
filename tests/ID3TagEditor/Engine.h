#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ID3TagEditor/ID3TagEditor.h"
#include "tests/TagBytes.h"

namespace tests {

// The engine's class has the name of its namespace.
namespace engine = ID3TagEditor;
using Editor = engine::ID3TagEditor;
using EngineError = engine::ID3TagEditorError;
using namespace engine;
using OptionalText = std::optional<std::string>;
using Name = FrameName;
using Text = ID3FrameWithStringContent;
using Integer = ID3FrameWithIntegerContent;

inline std::string charactersOf(const platform::Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

/// Returns the body of a text frame in ISO-8859-1 as the engine writes it, terminator included.
inline std::string latin1(std::string_view text) {
  return "\0"s + std::string(text) + "\0"s;
}

inline std::optional<ID3Tag> tagIn(std::string_view mp3) {
  return Editor().read(bytesFrom(mp3));
}

/// A tag that was read, with its typed view.
struct Reading {
  explicit Reading(std::string_view mp3) : tag(tagIn(mp3).value()) {}
  /// Reads a tag with a single frame. The padding keeps the frame away from the tag's last ten bytes, where
  /// none is read.
  Reading(int version, std::string_view id, std::string_view body)
      : Reading(TagBytes(version).frame(id, body).padding(32).characters()) {}
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;

  ID3Tag tag;
  ID3TagContentReader content{tag};
};

/// Returns the error that the engine throws in the action, or nothing.
template <class Action>
std::optional<EngineError::Case> engineErrorOf(Action action) {
  try {
    action();
  } catch (const EngineError& error) {
    return error.value();
  }
  return std::nullopt;
}

/// Returns the bytes of a file that contains only the tag.
inline std::string written(ID3Tag tag) {
  return charactersOf(Editor().write(tag, platform::SharedBytes()));
}

inline const std::string jpeg = "\xFF\xD8\xFF\xE0 a photograph"s;
inline const std::string png = "\x89PNG a drawing"s;

/// Returns a tag with a frame of every kind that the version has. Each text is the name of its field.
template <class Builder>
ID3Tag fullTag() {
  constexpr int version = rawValue(Builder::version);
  const ID3FramePartOfTotal disc(1, 2);
  const std::vector<Integer> number{Integer(0), Integer(1), Integer(2), Integer(3), Integer(4), Integer(5)};
  Builder builder;
  builder.title(Text("title")).album(Text("album")).albumArtist(Text("albumArtist")).artist(Text("artist"));
  builder.composer(Text("composer")).conductor(Text("conductor")).copyright(Text("copyright"));
  builder.contentGrouping(Text("contentGrouping")).encodedBy(Text("encodedBy")).lyricist(Text("lyricist"));
  builder.encoderSettings(Text("encoderSettings")).mixArtist(Text("mixArtist")).subtitle(Text("subtitle"));
  builder.publisher(Text("publisher")).initialKey(Text("initialKey"));
  builder.originalFilename(Text("originalFilename"));
  builder.beatsPerMinute(number[1]).lengthInMilliseconds(number[2]);
  builder.genre({ID3Genre::rock, "Rock"}).discPosition(disc).trackPosition({3, 12});
  builder.attachedPicture(ID3PictureType::backCover,
                          {bytesFrom(png), ID3PictureType::backCover, ID3PictureFormat::png});
  builder.attachedPicture(ID3PictureType::frontCover,
                          {bytesFrom(jpeg), ID3PictureType::frontCover, ID3PictureFormat::jpeg});
  for (const auto language : {ID3FrameContentLanguage::ita, ID3FrameContentLanguage::eng}) {
    builder.unsynchronisedLyrics(language, {language, "l", "lyrics"});
    builder.comment(language, {language, "c", "comment"});
  }
  if constexpr (version < 4) {
    builder.sizeInBytes(number[3]).recordingYear(Integer(1977));
    builder.recordingDayMonth({3, 12}).recordingHourMinute({9, 5});
  } else {
    builder.recordingDateTime(
        ID3FrameRecordingDateTime({RecordingDate{14, 11, 2023}, RecordingTime{22, 13}}));
  }
  if constexpr (version > 2) {
    builder.fileOwner(Text("fileOwner")).iTunesGrouping(Text("iTunesGrouping"));
    builder.iTunesMovementName(Text("iTunesMovementName"));
    builder.iTunesMovementIndex(number[4]).iTunesMovementCount(number[5]);
    builder.iTunesPodcastCategory(Text("iTunesPodcastCategory"));
    builder.iTunesPodcastDescription(Text("iTunesPodcastDescription"));
    builder.iTunesPodcastID(Text("iTunesPodcastID")).iTunesPodcastKeywords(Text("iTunesPodcastKeywords"));
  }
  return builder.build();
}

}  // namespace tests
