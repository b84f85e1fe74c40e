#include "ID3TagEditor/create/TextFrames.h"

#include <chrono>

#include "platform/base/Strings.h"

namespace ID3TagEditor {

using platform::Bytes;

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

std::optional<std::string> textOf(const ID3FrameWithStringContent& frame) {
  return frame.content();
}

std::optional<std::string> textOf(const ID3FrameWithIntegerContent& frame) {
  if (!frame.value()) return std::nullopt;
  return std::to_string(*frame.value());
}

std::optional<std::string> textOf(const ID3FrameGenre& frame) {
  const std::string number =
      frame.identifier ? "(" + std::to_string(rawValue(*frame.identifier)) + ")" : std::string();
  return number + frame.description.value_or("");
}

std::optional<std::string> textOf(const ID3FramePartOfTotal& frame) {
  return std::to_string(frame.part) + (frame.total ? "/" + std::to_string(*frame.total) : "");
}

std::optional<std::string> textOf(const ID3FrameRecordingDayMonth& frame) {
  return fourDigits(frame.day(), frame.month());
}

std::optional<std::string> textOf(const ID3FrameRecordingHourMinute& frame) {
  return fourDigits(frame.hour(), frame.minute());
}

std::optional<std::string> textOf(const ID3FrameRecordingDateTime& frame) {
  const RecordingDateTime& moment = frame.recordingDateTime();
  if (!moment.date || !moment.date->year) return std::nullopt;
  const auto timestamp = TimestampCreator().createFrom(moment);
  return timestamp ? *timestamp : std::to_string(*moment.date->year);
}

Bytes utf16(std::string_view text) {
  return platform::Strings::toUTF16WithMark(text).value_or(Bytes());
}

Bytes StringToBytesAdapter::body(ID3StringEncoding encoding, ID3Version version, platform::ByteView text,
                                 std::size_t terminatorSize) const {
  Bytes body{frameConfiguration_.encodingByteFor(version, encoding)};
  platform::append(body, text);
  paddingAdder_.addPaddingTo(body, terminatorSize);
  return body;
}

Bytes ID3UTF16StringToByteAdapter::adapt(std::string_view string, ID3Version version) const {
  return body(ID3StringEncoding::UTF16, version, utf16(string), 2);
}

Bytes ID3ISO88591StringToByteAdapter::adapt(std::string_view string, ID3Version version) const {
  const std::optional<Bytes> text = platform::Strings::toLatin1(string);
  if (!text) return ID3UTF16StringToByteAdapter().adapt(string, version);
  return body(ID3StringEncoding::ISO88591, version, *text, 1);
}

void ID3FrameFromStringContentCreator::createFrame(FrameType frameType, ID3Version version,
                                                   std::string_view content, Bytes& output) const {
  const Bytes body = stringToBytesAdapter_->adapt(content, version);
  frameHeaderCreator_.createUsing(version, frameType, body.size(), output);
  platform::append(output, body);
}

}  // namespace ID3TagEditor
