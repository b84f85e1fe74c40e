#include "ID3TagEditor/create/ID3FrameCreatorsFactory.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

#include "ID3TagEditor/create/ID3AttachedPicturesFramesCreator.h"
#include "ID3TagEditor/create/ID3FrameContentCreator.h"
#include "ID3TagEditor/create/ID3FramesWithLocalizedContentCreator.h"
#include "ID3TagEditor/create/StructuredFrameCreators.h"
#include "platform/base/EnumerationTable.h"

namespace ID3TagEditor {

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
