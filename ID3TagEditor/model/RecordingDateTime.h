#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

namespace ID3TagEditor {

using OptionalInteger = std::optional<std::int64_t>;

/// A day of the Gregorian calendar, as far as it is known.
struct RecordingDate {
  OptionalInteger day;
  OptionalInteger month;
  OptionalInteger year;

  bool operator==(const RecordingDate&) const = default;
};

/// A time of day in UTC, as far as it is known.
struct RecordingTime {
  OptionalInteger hour;
  OptionalInteger minute;

  bool operator==(const RecordingTime&) const = default;
};

/// When a v2.4 tag says that the track was recorded.
struct RecordingDateTime {
  std::optional<RecordingDate> date;
  std::optional<RecordingTime> time;

  bool operator==(const RecordingDateTime&) const = default;
};

/// The numbers in decimal with one space between them, 0 for an absent one.
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

/// "Date: (1 2 2019) - Time: (10 30)", with a hyphen for an absent part.
inline std::string description(const RecordingDateTime& dateTime) {
  return "Date: (" + (dateTime.date ? description(*dateTime.date) : "-") + ") - Time: (" +
         (dateTime.time ? description(*dateTime.time) : "-") + ")";
}

}  // namespace ID3TagEditor
