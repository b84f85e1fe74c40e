#include "ID3TagEditor/create/StructuredFrames.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <span>

#include "ID3TagEditor/create/TextFrames.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/EnumerationTable.h"

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

using platform::Bytes;

namespace {

std::string_view codeOf(ID3FrameContentLanguage language) {
  return language == ID3FrameContentLanguage::unknown ? "XXX" : rawValue(language);
}

}  // namespace

void ID3LocalizedFrameCreator::createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType,
                                           ID3Version version, Bytes& output) const {
  Bytes body{id3FrameConfiguration_.encodingByteFor(version, ID3StringEncoding::UTF16)};
  platform::append(body, platform::bytesOf(codeOf(frame.language())));
  platform::append(body, utf16(frame.contentDescription()));
  paddingAdder_->addPaddingTo(body, 2);
  platform::append(body, utf16(frame.content()));
  frameHeaderCreator_->createUsing(version, frameType, body.size(), output);
  platform::append(output, body);
}

void ID3FramesWithLocalizedContentCreator::createFrames(const ID3Tag& id3Tag, Bytes& output) const {
  for (const auto* frame : localizedFramesIn(id3Tag, kind_.name)) {
    localizedFrameCreator_->createFrame(*frame, kind_.type, id3Tag.properties.version, output);
  }
}

std::unique_ptr<ID3FrameCreator> ID3FramesWithLocalizedContentCreatorFactory::make(const FrameKind& kind) {
  return std::make_unique<ID3FramesWithLocalizedContentCreator>(
      kind,
      std::make_unique<ID3LocalizedFrameCreator>(
          ID3FrameHeaderCreatorFactory::make(), std::make_unique<PaddingAdderToEndOfContentUsingNullChar>()));
}

void ID3AttachedPictureFrameCreator::createFrame(const ID3FrameAttachedPicture& picture, const ID3Tag& id3Tag,
                                                 platform::Bytes& output) const {
  const ID3Version version = id3Tag.properties.version;
  const auto prefix = id3AttachedPictureFrameConfiguration_.getHeaderMimeTypeFor(picture.format(), version);
  frameHeaderCreator_->createUsing(version, FrameType::attachedPicture,
                                   prefix.size() + picture.picture().size(), output);
  const std::size_t body = output.size();
  platform::append(output, prefix);
  output[body + id3AttachedPictureFrameConfiguration_.getPictureTypeBytePositionFor(
                    picture.format(), version)] = rawValue(picture.type());
  platform::append(output, picture.picture());
}

void ID3AttachedPicturesFramesCreator::createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const {
  for (const auto* frame : picturesIn(id3Tag))
    attachedPictureFrameCreator_->createFrame(*frame, id3Tag, output);
}

std::unique_ptr<ID3FrameCreator> ID3AttachedPicturesFramesCreatorFactory::make() {
  return std::make_unique<ID3AttachedPicturesFramesCreator>(
      std::make_unique<ID3AttachedPictureFrameCreator>(ID3FrameHeaderCreatorFactory::make()));
}

namespace {

using CreatorPointer = std::unique_ptr<ID3FrameCreator>;

std::unique_ptr<FrameFromStringContentCreator> textCreator(ID3StringEncoding encoding) {
  return encoding == ID3StringEncoding::UTF16
             ? ID3FrameFromStringContentCreatorWithUTF16EncodingFactory::make()
             : ID3FrameFromStringContentCreatorWithISO88591EncodingFactory::make();
}

/// Returns a creator for a kind of frame that contains a single text or number.
template <class Adapter>
CreatorPointer plain(const FrameKind& kind) {
  return std::make_unique<ID3FrameContentCreator>(std::make_unique<Adapter>(textCreator(kind.encoding)),
                                                  kind.name, kind.type);
}

template <class Creator>
CreatorPointer structured(const FrameKind& kind) {
  return std::make_unique<Creator>(kind, textCreator(kind.encoding));
}

CreatorPointer dateTime(const FrameKind& kind) {
  return std::make_unique<ID3RecordingDateTimeFrameCreator>(kind, textCreator(kind.encoding),
                                                            std::make_unique<ID3TimestampCreator>());
}

CreatorPointer pictures(const FrameKind& /*kind*/) {
  return ID3AttachedPicturesFramesCreatorFactory::make();
}

struct Writing {
  FrameContent content;
  CreatorPointer (*creatorFor)(const FrameKind& kind);
};

constexpr std::array writings = std::to_array<Writing>({
    {FrameContent::string, plain<FrameFromStringContentAdapter>},
    {FrameContent::integer, plain<FrameFromIntegerContentAdapter>},
    {FrameContent::partOfTotal, structured<ID3PartOfTotalFrameCreator>},
    {FrameContent::genre, structured<ID3GenreFrameCreator>},
    {FrameContent::dayMonth, structured<ID3RecordingDayMonthFrameCreator>},
    {FrameContent::hourMinute, structured<ID3RecordingHourMinuteFrameCreator>},
    {FrameContent::dateTime, dateTime},
    {FrameContent::picture, pictures},
    {FrameContent::localized, ID3FramesWithLocalizedContentCreatorFactory::make},
});
static_assert(platform::hasARowForEachCase(writings, &Writing::content, lastFrameContent));
static_assert(std::ranges::all_of(frameKinds,
                                  [](const FrameKind& kind) {
                                    const auto isOf = [&](FrameContent content, ID3StringEncoding encoding) {
                                      return kind.content != content || kind.encoding == encoding;
                                    };
                                    return kind.encoding != ID3StringEncoding::UTF8 &&
                                           isOf(FrameContent::picture, ID3StringEncoding::ISO88591) &&
                                           isOf(FrameContent::localized, ID3StringEncoding::UTF16);
                                  }),
              "the creators write what a row says");

using Kinds = std::span<const FrameKind>;

/// Returns the rows from `first` to `last`, both included.
constexpr Kinds rows(FrameType first, FrameType last) {
  return {&kindOf(first), static_cast<std::size_t>(&kindOf(last) - &kindOf(first)) + 1};
}

constexpr Kinds recordingTimes = rows(FrameType::recordingYear, FrameType::recordingDateTime);
constexpr Kinds iTunesKinds = rows(FrameType::iTunesGrouping, FrameType::iTunesPodcastKeywords);
constexpr Kinds otherKinds{frameKinds.data(), recordingTimes.data()};
static_assert(otherKinds.size() + recordingTimes.size() + iTunesKinds.size() == frameKinds.size() &&
                  &recordingTimes.back() + 1 == iTunesKinds.data(),
              "every kind is written, in the order of the rows");

FrameCreators creatorsFor(Kinds kinds) {
  FrameCreators creators;
  for (const FrameKind& kind : kinds) {
    creators.push_back(writings[static_cast<std::size_t>(kind.content)].creatorFor(kind));
  }
  return creators;
}

}  // namespace

FrameCreators ID3RecordingTimesFrameCreatorsFactory::make() {
  return creatorsFor(recordingTimes);
}

FrameCreators ID3iTunesFrameCreatorsFactory::make() {
  return creatorsFor(iTunesKinds);
}

FrameCreators ID3FrameCreatorsFactory::make() {
  FrameCreators creators = creatorsFor(otherKinds);
  for (const auto make : {ID3RecordingTimesFrameCreatorsFactory::make, ID3iTunesFrameCreatorsFactory::make}) {
    FrameCreators more = make();
    std::ranges::move(more, std::back_inserter(creators));
  }
  return creators;
}

}  // namespace ID3TagEditor
