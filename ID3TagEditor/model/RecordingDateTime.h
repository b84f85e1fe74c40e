#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

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

}  // namespace ID3TagEditor
