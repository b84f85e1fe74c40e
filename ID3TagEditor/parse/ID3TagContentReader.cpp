#include "ID3TagEditor/parse/ID3TagContentReader.h"

#include "ID3TagEditor/model/FramesInTag.h"

namespace ID3TagEditor {

std::optional<std::string> ID3TagContentReader::text(FrameName name) const {
  const auto* frame = id3Tag_.frame<ID3FrameWithStringContent>(name);
  if (frame == nullptr) return std::nullopt;
  return frame->content();
}

OptionalInteger ID3TagContentReader::integer(FrameName name) const {
  const auto* frame = id3Tag_.frame<ID3FrameWithIntegerContent>(name);
  return frame != nullptr ? frame->value() : std::nullopt;
}

std::optional<PartOfTotal> ID3TagContentReader::position(FrameName name) const {
  const auto* frame = id3Tag_.frame<ID3FramePartOfTotal>(name);
  if (frame == nullptr) return std::nullopt;
  return PartOfTotal{.position = frame->part, .total = frame->total};
}

std::optional<Genre> ID3TagContentReader::genre() const {
  const auto* frame = id3Tag_.frame<ID3FrameGenre>(FrameName::genre);
  if (frame == nullptr) return std::nullopt;
  return Genre{.identifier = frame->identifier, .description = frame->description};
}

std::optional<DayMonth> ID3TagContentReader::recordingDayMonth() const {
  const auto* frame = id3Tag_.frame<ID3FrameRecordingDayMonth>(FrameName::recordingDayMonth);
  if (frame == nullptr) return std::nullopt;
  return DayMonth{.day = frame->day(), .month = frame->month()};
}

std::optional<HourMinute> ID3TagContentReader::recordingHourMinute() const {
  const auto* frame = id3Tag_.frame<ID3FrameRecordingHourMinute>(FrameName::recordingHourMinute);
  if (frame == nullptr) return std::nullopt;
  return HourMinute{.hour = frame->hour(), .minute = frame->minute()};
}

std::optional<DateTime> ID3TagContentReader::recordingDateTime() const {
  const auto* frame = id3Tag_.frame<ID3FrameRecordingDateTime>(FrameName::recordingDateTime);
  if (frame == nullptr) return std::nullopt;
  const RecordingDate date = frame->recordingDateTime().date.value_or(RecordingDate{});
  const RecordingTime time = frame->recordingDateTime().time.value_or(RecordingTime{});
  return DateTime{
      .day = date.day, .month = date.month, .year = date.year, .hour = time.hour, .minute = time.minute};
}

std::vector<AttachedPicture> ID3TagContentReader::attachedPictures() const {
  std::vector<AttachedPicture> pictures;
  for (const auto* frame : picturesIn(id3Tag_)) {
    pictures.push_back({.picture = frame->picture(), .format = frame->format(), .type = frame->type()});
  }
  return pictures;
}

std::vector<LocalizedContent> ID3TagContentReader::localized(
    FrameName (*nameFor)(ID3FrameContentLanguage)) const {
  std::vector<LocalizedContent> contents;
  for (const auto* frame : localizedFramesIn(id3Tag_, nameFor)) {
    contents.push_back({.language = frame->language(),
                        .contentDescription = frame->contentDescription(),
                        .content = frame->content()});
  }
  return contents;
}

std::vector<LocalizedContent> ID3TagContentReader::unsynchronizedLyrics() const {
  return localized(FrameName::unsynchronizedLyrics);
}

std::vector<LocalizedContent> ID3TagContentReader::comments() const {
  return localized(FrameName::comment);
}

}  // namespace ID3TagEditor
