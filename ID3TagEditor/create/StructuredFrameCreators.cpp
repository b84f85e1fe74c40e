#include "ID3TagEditor/create/StructuredFrameCreators.h"

#include <chrono>

#include "ID3TagEditor/model/ID3Frames.h"

namespace ID3TagEditor {

namespace {

/// Returns the number with at least two characters; a minus sign counts as one of them.
std::string twoDigits(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return digits.size() < 2 ? "0" + digits : digits;
}

std::optional<std::string> fourDigits(OptionalInteger first, OptionalInteger second) {
  if (!first || !second) return std::nullopt;
  return twoDigits(*first) + twoDigits(*second);
}

}  // namespace

void ID3StructuredFrameCreator::createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const {
  if (const auto text = textIn(id3Tag, kind_.name)) {
    frameCreator_->createFrame(kind_.type, id3Tag.properties.version, *text, output);
  }
}

std::optional<std::string> ID3GenreFrameCreator::textIn(const ID3Tag& id3Tag, FrameName name) const {
  const auto* frame = id3Tag.frame<ID3FrameGenre>(name);
  if (frame == nullptr) return std::nullopt;
  const std::string number =
      frame->identifier ? "(" + std::to_string(rawValue(*frame->identifier)) + ")" : std::string();
  return number + frame->description.value_or("");
}

std::optional<std::string> ID3PartOfTotalFrameCreator::textIn(const ID3Tag& id3Tag, FrameName name) const {
  const auto* frame = id3Tag.frame<ID3FramePartOfTotal>(name);
  if (frame == nullptr) return std::nullopt;
  return std::to_string(frame->part) + (frame->total ? "/" + std::to_string(*frame->total) : "");
}

std::optional<std::string> ID3RecordingDayMonthFrameCreator::textIn(const ID3Tag& id3Tag,
                                                                    FrameName name) const {
  const auto* frame = id3Tag.frame<ID3FrameRecordingDayMonth>(name);
  return frame != nullptr ? fourDigits(frame->day(), frame->month()) : std::nullopt;
}

std::optional<std::string> ID3RecordingHourMinuteFrameCreator::textIn(const ID3Tag& id3Tag,
                                                                      FrameName name) const {
  const auto* frame = id3Tag.frame<ID3FrameRecordingHourMinute>(name);
  return frame != nullptr ? fourDigits(frame->hour(), frame->minute()) : std::nullopt;
}

std::optional<std::string> ID3TimestampCreator::createFrom(const RecordingDateTime& recordingDateTime) const {
  using namespace std::chrono;
  const auto& [date, time] = recordingDateTime;
  if (!date || !time || !date->year || !date->month || !date->day || !time->hour || !time->minute) {
    return std::nullopt;
  }
  // The caller can set the fields to any number. Days, hours and minutes beyond their unit carry over.
  const auto fits = [](std::int64_t value, std::int64_t most) { return value >= -most && value <= most; };
  constexpr std::int64_t mostUnits = 1'000'000'000;
  if (!fits(*date->year, static_cast<int>(year::max())) || !fits(*date->month, mostUnits) ||
      !fits(*date->day, mostUnits) || !fits(*time->hour, mostUnits) || !fits(*time->minute, mostUnits)) {
    return std::nullopt;
  }
  const std::int64_t monthsSinceYear0 = *date->year * 12 + *date->month - 1;
  const std::int64_t wholeYears =
      monthsSinceYear0 >= 0 ? monthsSinceYear0 / 12 : (monthsSinceYear0 - 11) / 12;
  if (!fits(wholeYears, static_cast<int>(year::max()))) return std::nullopt;
  const auto monthIndex = static_cast<unsigned>(monthsSinceYear0 - wholeYears * 12);
  const sys_days firstOfMonth(year(static_cast<int>(wholeYears)) / month(monthIndex + 1) / 1);
  const sys_seconds moment =
      firstOfMonth + days(*date->day - 1) + hours(*time->hour) + minutes(*time->minute) + seconds(0);
  return std::to_string(moment.time_since_epoch().count());
}

std::optional<std::string> ID3RecordingDateTimeFrameCreator::textIn(const ID3Tag& id3Tag,
                                                                    FrameName name) const {
  const auto* frame = id3Tag.frame<ID3FrameRecordingDateTime>(name);
  if (frame == nullptr) return std::nullopt;
  const RecordingDateTime& moment = frame->recordingDateTime();
  if (!moment.date || !moment.date->year) return std::nullopt;
  const auto timestamp = timestampCreator_->createFrom(moment);
  return timestamp ? *timestamp : std::to_string(*moment.date->year);
}

}  // namespace ID3TagEditor
