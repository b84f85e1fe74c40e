#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "ID3TagEditor/model/ID3Frames.h"
#include "platform/base/Strings.h"

// The few values that the rules of reading take apart or take for something else, so that they do not come
// back from a written tag as they were. Everything else does, and is checked to.
namespace fuzz {

/// What stands before a parenthesised word is dropped, and that word goes behind the rest.
inline bool isGenreReadInParts(std::string_view text) {
  const std::size_t opening = text.find('(');
  return opening != std::string_view::npos && text.find(')', opening) != std::string_view::npos;
}

/// The last terminator with a mark behind it parts the description from the content.
inline bool isContentReadInParts(std::string_view text) {
  using namespace std::string_view_literals;
  const platform::Bytes content = platform::Strings::toUTF16WithMark(text).value();
  return platform::charactersOf(content).find("\0\0\xFF\xFE"sv) != std::string_view::npos;
}

/// A second signature in a picture is read as another picture, but for a JPEG that its frame's fields lead
/// to.
inline bool isPictureReadInParts(platform::ByteView picture) {
  using namespace std::string_view_literals;
  std::string_view characters = platform::charactersOf(picture);
  if (characters.starts_with("\xFF\xD8\xFF") && !characters.starts_with("\xFF\xD8\xFF\xE0")) return false;
  characters.remove_prefix(1);
  return characters.find("\xFF\xD8\xFF\xE0"sv) != std::string_view::npos ||
         characters.find("\x89PNG"sv) != std::string_view::npos;
}

/// A count of seconds up to 9999 is read as a year.
inline bool isMomentReadAsYear(const ID3TagEditor::RecordingDateTime& moment) {
  const ID3TagEditor::RecordingDate firstDay{.day = 1, .month = 1, .year = 1970};
  return moment.date == firstDay && moment.time &&
         moment.time->hour.value_or(0) * 3600 + moment.time->minute.value_or(0) * 60 <= 9999;
}

/// Two numbers stand in one text, which is read as two halves of the same length.
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
