#include "ID3TagEditor/create/FrameCreators.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

#include "platform/base/EnumerationTable.h"

namespace ID3TagEditor {

using platform::Bytes;

namespace {

std::string_view codeOf(ID3FrameContentLanguage language) {
  return language == ID3FrameContentLanguage::unknown ? "XXX" : rawValue(language);
}

struct Writing {
  FrameContent content;
  std::unique_ptr<ID3FrameCreator> (*creatorFor)(const FrameKind& kind);
};

template <class Frame>
constexpr auto text = FrameCreatorFactory<TextFrameCreator<Frame>, FrameKind>::make;

constexpr std::array writings = std::to_array<Writing>({
    {FrameContent::string, text<ID3FrameWithStringContent>},
    {FrameContent::integer, text<ID3FrameWithIntegerContent>},
    {FrameContent::partOfTotal, text<ID3FramePartOfTotal>},
    {FrameContent::genre, text<ID3FrameGenre>},
    {FrameContent::dayMonth, text<ID3FrameRecordingDayMonth>},
    {FrameContent::hourMinute, text<ID3FrameRecordingHourMinute>},
    {FrameContent::dateTime, text<ID3FrameRecordingDateTime>},
    {FrameContent::picture, [](const FrameKind&) { return ID3AttachedPicturesFramesCreatorFactory::make(); }},
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

void ID3AttachedPictureFrameCreator::createFrame(const ID3FrameAttachedPicture& picture, const ID3Tag& id3Tag,
                                                 Bytes& output) const {
  const ID3Version version = id3Tag.properties.version;
  const auto prefix = id3AttachedPictureFrameConfiguration_.getHeaderMimeTypeFor(picture.format(), version);
  frameHeaderCreator_.createUsing(version, FrameType::attachedPicture,
                                  prefix.size() + picture.picture().size(), output);
  const std::size_t body = output.size();
  platform::append(output, prefix);
  output[body + id3AttachedPictureFrameConfiguration_.getPictureTypeBytePositionFor(
                    picture.format(), version)] = rawValue(picture.type());
  platform::append(output, picture.picture());
}

void ID3AttachedPicturesFramesCreator::createFrames(const ID3Tag& id3Tag, Bytes& output) const {
  for (const auto* frame : picturesIn(id3Tag))
    attachedPictureFrameCreator_.createFrame(*frame, id3Tag, output);
}

void ID3LocalizedFrameCreator::createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType,
                                           ID3Version version, Bytes& output) const {
  Bytes body{id3FrameConfiguration_.encodingByteFor(version, ID3StringEncoding::UTF16)};
  platform::append(body, platform::bytesOf(codeOf(frame.language())));
  platform::append(body, utf16(frame.contentDescription()));
  paddingAdder_.addPaddingTo(body, 2);
  platform::append(body, utf16(frame.content()));
  frameHeaderCreator_.createUsing(version, frameType, body.size(), output);
  platform::append(output, body);
}

void ID3FramesWithLocalizedContentCreator::createFrames(const ID3Tag& id3Tag, Bytes& output) const {
  for (const auto* frame : localizedFramesIn(id3Tag, kind_.name)) {
    localizedFrameCreator_.createFrame(*frame, kind_.type, id3Tag.properties.version, output);
  }
}

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
