#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

#include "ID3TagEditor/model/Enumerations.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

using OptionalInteger = std::optional<std::int64_t>;

/// A day of the Gregorian calendar. Unknown parts are absent.
struct RecordingDate {
  OptionalInteger day;
  OptionalInteger month;
  OptionalInteger year;

  bool operator==(const RecordingDate&) const = default;
};

/// A time of day in UTC. Unknown parts are absent.
struct RecordingTime {
  OptionalInteger hour;
  OptionalInteger minute;

  bool operator==(const RecordingTime&) const = default;
};

/// The recording time in a v2.4 tag.
struct RecordingDateTime {
  std::optional<RecordingDate> date;
  std::optional<RecordingTime> time;

  bool operator==(const RecordingDateTime&) const = default;
};

/// Returns the numbers in decimal, separated by spaces, with 0 for an absent one.
inline std::string spaced(std::initializer_list<OptionalInteger> numbers) {
  std::string text;
  for (const OptionalInteger& number : numbers) {
    if (!text.empty()) text += ' ';
    text += std::to_string(number.value_or(0));
  }
  return text;
}

inline std::string description(const RecordingDate& date) {
  return spaced({date.day, date.month, date.year});
}

inline std::string description(const RecordingTime& time) {
  return spaced({time.hour, time.minute});
}

/// Returns "Date: (1 2 2019) - Time: (10 30)", with a hyphen for an absent part.
inline std::string description(const RecordingDateTime& dateTime) {
  return "Date: (" + (dateTime.date ? description(*dateTime.date) : "-") + ") - Time: (" +
         (dateTime.time ? description(*dateTime.time) : "-") + ")";
}

// The contents of a tag's frames as plain values.

struct Genre {
  std::optional<ID3Genre> identifier;
  std::optional<std::string> description;

  bool operator==(const Genre&) const = default;
};

struct PartOfTotal {
  std::int64_t position;
  OptionalInteger total;

  bool operator==(const PartOfTotal&) const = default;
};

struct DayMonth {
  OptionalInteger day;
  OptionalInteger month;

  bool operator==(const DayMonth&) const = default;
};

struct HourMinute {
  OptionalInteger hour;
  OptionalInteger minute;

  bool operator==(const HourMinute&) const = default;
};

struct DateTime {
  OptionalInteger day;
  OptionalInteger month;
  OptionalInteger year;
  OptionalInteger hour;
  OptionalInteger minute;

  bool operator==(const DateTime&) const = default;
};

struct AttachedPicture {
  platform::SharedBytes picture;
  ID3PictureFormat format;
  ID3PictureType type;

  bool operator==(const AttachedPicture&) const = default;
};

struct LocalizedContent {
  ID3FrameContentLanguage language;
  std::string contentDescription;
  std::string content;

  bool operator==(const LocalizedContent&) const = default;
};

}  // namespace ID3TagEditor
