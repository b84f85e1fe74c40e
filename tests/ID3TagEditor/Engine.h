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

// The kinds of frame that contain one text, and those that contain one number.
// clang-format off
#define TEXT_FIELDS(X) \
  X(title) X(album) X(albumArtist) X(artist) X(composer) X(conductor) X(contentGrouping) X(copyright) \
  X(encodedBy) X(encoderSettings) X(fileOwner) X(lyricist) X(mixArtist) X(publisher) X(subtitle) \
  X(initialKey) X(originalFilename) X(iTunesGrouping) X(iTunesMovementName) X(iTunesPodcastCategory) \
  X(iTunesPodcastDescription) X(iTunesPodcastID) X(iTunesPodcastKeywords)
#define NUMBER_FIELDS(X) \
  X(beatsPerMinute) X(lengthInMilliseconds) X(sizeInBytes) X(recordingYear) X(iTunesMovementIndex) \
  X(iTunesMovementCount)
// clang-format on

/// Returns a tag with a frame of every kind that the version has. Each text is the name of its field, and
/// each number the length of that name.
inline ID3Tag fullTag(ID3Version version) {
  ID32v3TagBuilder builder;
#define SET_TEXT(field) builder.field(Text(#field));
#define SET_NUMBER(field) builder.field(Integer(std::ssize(#field##sv)));
  TEXT_FIELDS(SET_TEXT)
  NUMBER_FIELDS(SET_NUMBER)
  builder.genre({ID3Genre::rock, "Rock"}).discPosition({1, 2}).trackPosition({3, 12});
  builder.recordingDayMonth({3, 12}).recordingHourMinute({9, 5});
  builder.attachedPicture(ID3PictureType::backCover,
                          {bytesFrom(png), ID3PictureType::backCover, ID3PictureFormat::png});
  builder.attachedPicture(ID3PictureType::frontCover,
                          {bytesFrom(jpeg), ID3PictureType::frontCover, ID3PictureFormat::jpeg});
  for (const auto language : {ID3FrameContentLanguage::ita, ID3FrameContentLanguage::eng}) {
    builder.unsynchronisedLyrics(language, {language, "l", "lyrics"});
    builder.comment(language, {language, "c", "comment"});
  }
  const ID3FrameRecordingDateTime moment({RecordingDate{14, 11, 2023}, RecordingTime{22, 13}});
  Frames frames = ID32v4TagBuilder().recordingDateTime(moment).build().frames;
  frames.merge(builder.build().frames);
  std::erase_if(frames,
                [&](const auto& frame) { return kindOf(frame.first.kind()).identifierIn(version).empty(); });
  return ID3Tag(version, frames);
}

}  // namespace tests
