#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/Strings.h"

// Recognise the few values that the engine does not read from a tag as they were written. The targets check
// that all other values are read unchanged.
namespace fuzz {

/// Returns whether the engine may split the genre: it drops the text before a word in parentheses, and
/// appends an unknown word to the rest.
inline bool isGenreReadInParts(std::string_view text) {
  const std::size_t opening = text.find('(');
  return opening != std::string_view::npos && text.find(')', opening) != std::string_view::npos;
}

/// Returns whether a part of the content would be read as its description: the engine splits the two at the
/// last terminator that is followed by a mark.
inline bool isContentReadInParts(std::string_view text) {
  using namespace std::string_view_literals;
  const platform::Bytes content = platform::Strings::toUTF16WithMark(text).value();
  return platform::charactersOf(content).find("\0\0\xFF\xFE"sv) != std::string_view::npos;
}

/// Returns whether the picture would also be read as another one, because it contains a second signature. A
/// JPEG that is not a JFIF file is found by its frame's fields instead.
inline bool isPictureReadInParts(platform::ByteView picture) {
  using namespace std::string_view_literals;
  std::string_view characters = platform::charactersOf(picture);
  if (characters.starts_with("\xFF\xD8\xFF") && !characters.starts_with("\xFF\xD8\xFF\xE0")) return false;
  characters.remove_prefix(1);
  return characters.find("\xFF\xD8\xFF\xE0"sv) != std::string_view::npos ||
         characters.find("\x89PNG"sv) != std::string_view::npos;
}

/// Returns whether the moment would be read as a year, as counts of seconds up to 9999 are.
inline bool isMomentReadAsYear(const ID3TagEditor::RecordingDateTime& moment) {
  const ID3TagEditor::RecordingDate firstDay{.day = 1, .month = 1, .year = 1970};
  return moment.date == firstDay && moment.time &&
         moment.time->hour.value_or(0) * 3600 + moment.time->minute.value_or(0) * 60 <= 9999;
}

/// Returns whether the two numbers have different lengths. They are written as one text, which is read as two
/// halves of the same length.
inline bool isPairReadInParts(ID3TagEditor::OptionalInteger first, ID3TagEditor::OptionalInteger second) {
  const auto length = [](ID3TagEditor::OptionalInteger number) {
    return std::max<std::size_t>(2, std::to_string(number.value_or(0)).size());
  };
  return length(first) != length(second);
}

inline bool isReadOtherwise(const ID3TagEditor::ID3Frame& frame) {
  using namespace ID3TagEditor;
  if (const auto* genre = dynamic_cast<const ID3FrameGenre*>(&frame)) {
    return !genre->identifier && isGenreReadInParts(genre->description.value_or(""));
  }
  if (const auto* localized = dynamic_cast<const ID3FrameWithLocalizedContent*>(&frame)) {
    return isContentReadInParts(localized->content());
  }
  if (const auto* recorded = dynamic_cast<const ID3FrameRecordingDateTime*>(&frame)) {
    return isMomentReadAsYear(recorded->recordingDateTime());
  }
  if (const auto* day = dynamic_cast<const ID3FrameRecordingDayMonth*>(&frame)) {
    return isPairReadInParts(day->day(), day->month());
  }
  if (const auto* time = dynamic_cast<const ID3FrameRecordingHourMinute*>(&frame)) {
    return isPairReadInParts(time->hour(), time->minute());
  }
  const auto* picture = dynamic_cast<const ID3FrameAttachedPicture*>(&frame);
  return picture != nullptr && isPictureReadInParts(picture->picture());
}

}  // namespace fuzz
