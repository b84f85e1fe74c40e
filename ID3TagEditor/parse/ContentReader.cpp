#include "ID3TagEditor/parse/ContentReader.h"

#include "ID3TagEditor/model/ID3Tag.h"

namespace ID3TagEditor {

std::optional<std::string> ID3TagContentReader::text(NameOf<ID3FrameWithStringContent> name) const {
  const auto* found = frame<ID3FrameWithStringContent>(name);
  if (found == nullptr) return std::nullopt;
  return found->content();
}

OptionalInteger ID3TagContentReader::integer(NameOf<ID3FrameWithIntegerContent> name) const {
  const auto* found = frame<ID3FrameWithIntegerContent>(name);
  return found != nullptr ? found->value() : std::nullopt;
}

std::optional<PartOfTotal> ID3TagContentReader::position(NameOf<ID3FramePartOfTotal> name) const {
  const auto* found = frame<ID3FramePartOfTotal>(name);
  if (found == nullptr) return std::nullopt;
  return PartOfTotal{.position = found->part, .total = found->total};
}

std::optional<Genre> ID3TagContentReader::genre() const {
  const auto* found = frame<ID3FrameGenre>(FrameName::genre);
  if (found == nullptr) return std::nullopt;
  return Genre{.identifier = found->identifier, .description = found->description};
}

std::optional<DayMonth> ID3TagContentReader::recordingDayMonth() const {
  const auto* found = frame<ID3FrameRecordingDayMonth>(FrameName::recordingDayMonth);
  if (found == nullptr) return std::nullopt;
  return DayMonth{.day = found->day(), .month = found->month()};
}

std::optional<HourMinute> ID3TagContentReader::recordingHourMinute() const {
  const auto* found = frame<ID3FrameRecordingHourMinute>(FrameName::recordingHourMinute);
  if (found == nullptr) return std::nullopt;
  return HourMinute{.hour = found->hour(), .minute = found->minute()};
}

std::optional<DateTime> ID3TagContentReader::recordingDateTime() const {
  const auto* found = frame<ID3FrameRecordingDateTime>(FrameName::recordingDateTime);
  if (found == nullptr) return std::nullopt;
  const RecordingDate date = found->recordingDateTime().date.value_or(RecordingDate{});
  const RecordingTime time = found->recordingDateTime().time.value_or(RecordingTime{});
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

std::vector<LocalizedContent> ID3TagContentReader::localized(FrameName::Kind kind) const {
  std::vector<LocalizedContent> contents;
  for (const auto* frame : localizedFramesIn(id3Tag_, kind)) {
    contents.push_back({.language = frame->language(),
                        .contentDescription = frame->contentDescription(),
                        .content = frame->content()});
  }
  return contents;
}

std::vector<LocalizedContent> ID3TagContentReader::unsynchronizedLyrics() const {
  return localized(FrameName::lyricsKind);
}

std::vector<LocalizedContent> ID3TagContentReader::comments() const {
  return localized(FrameName::commentKind);
}

}  // namespace ID3TagEditor
