#include "ID3TagEditor/parse/FrameContentParsingOperationFactories.h"

#include <array>

#include "ID3TagEditor/model/FrameNamesWithLocalizedContent.h"
#include "ID3TagEditor/parse/FrameContentParsingOperations.h"
#include "platform/Text.h"

namespace ID3TagEditor {

using OperationPointer = std::unique_ptr<FrameContentParsingOperation>;

namespace {

struct ID3FrameStringContentParsingOperationFactory {
  /// An operation whose frame, stored under `name`, is what `makeFrame` makes of the text.
  template <class MakeFrame>
  static OperationPointer make(FrameName name, MakeFrame makeFrame) {
    return std::make_unique<ID3FrameStringContentParsingOperation>([name, makeFrame](std::string text) {
      using Frame = decltype(makeFrame(text));
      return std::pair<FrameName, std::unique_ptr<ID3Frame>>(
          name, std::make_unique<Frame>(makeFrame(std::move(text))));
    });
  }
};

using TextOperation = ID3FrameStringContentParsingOperationFactory;

ID3FramePartOfTotal partOfTotal(const std::string& text) {
  return ID3PartOfTotalStringAdapter().adapt(text);
}

}  // namespace

OperationPointer ID3ParsingOperationForID3FrameWithStringFactory::make(FrameName frameName) {
  return TextOperation::make(frameName,
                             [](std::string text) { return ID3FrameWithStringContent(std::move(text)); });
}

OperationPointer ID3ParsingOperationForID3FrameWithIntegerFactory::make(FrameName frameName) {
  return TextOperation::make(frameName, [](const std::string& text) {
    return ID3FrameWithIntegerContent(platform::Text::decimalInteger(text));
  });
}

OperationPointer ID3DiscPositionFrameContentParsingOperationFactory::make() {
  return TextOperation::make(FrameName::discPosition, partOfTotal);
}

OperationPointer ID3TrackPositionFrameContentParsingOperationFactory::make() {
  return TextOperation::make(FrameName::trackPosition, partOfTotal);
}

OperationPointer ID3RecordingDayMonthFrameContentParsingOperationFactory::make() {
  return TextOperation::make(FrameName::recordingDayMonth, [](const std::string& text) {
    const auto [day, month] = ID3CoupleOfNumbersAdapter().adapt(text);
    return ID3FrameRecordingDayMonth(day, month);
  });
}

OperationPointer ID3RecordingHourMinuteFrameContentParsingOperationFactory::make() {
  return TextOperation::make(FrameName::recordingHourMinute, [](const std::string& text) {
    const auto [hour, minute] = ID3CoupleOfNumbersAdapter().adapt(text);
    return ID3FrameRecordingHourMinute(hour, minute);
  });
}

OperationPointer ID3GenreFrameContentParsingOperationFactory::make() {
  return TextOperation::make(FrameName::genre,
                             [](const std::string& text) { return ID3GenreStringAdapter().adapt(text); });
}

OperationPointer ID3RecordingTimeFrameContentParsingOperationFactory::make() {
  return std::make_unique<ID3RecordingTimeFrameContentParsingOperation>();
}

OperationPointer ID3AttachedPictureFrameContentParsingOperationFactory::make() {
  return std::make_unique<ID3AttachedPictureFrameContentParsingOperation>();
}

OperationPointer ID3LocalizedFrameContentParsingOperationFactory::make(
    FrameName (*frameName)(ID3FrameContentLanguage)) {
  return std::make_unique<ID3LocalizedFrameContentParsingOperation>(frameName);
}

namespace {

struct NamedKind {
  FrameType type;
  FrameName name;
};

constexpr std::array stringKinds = std::to_array<NamedKind>({
    {FrameType::title, FrameName::title},
    {FrameType::artist, FrameName::artist},
    {FrameType::album, FrameName::album},
    {FrameType::albumArtist, FrameName::albumArtist},
    {FrameType::composer, FrameName::composer},
    {FrameType::conductor, FrameName::conductor},
    {FrameType::contentGrouping, FrameName::contentGrouping},
    {FrameType::copyright, FrameName::copyright},
    {FrameType::encodedBy, FrameName::encodedBy},
    {FrameType::encoderSettings, FrameName::encoderSettings},
    {FrameType::fileOwner, FrameName::fileOwner},
    {FrameType::lyricist, FrameName::lyricist},
    {FrameType::mixArtist, FrameName::mixArtist},
    {FrameType::publisher, FrameName::publisher},
    {FrameType::subtitle, FrameName::subtitle},
    {FrameType::initialKey, FrameName::initialKey},
    {FrameType::originalFilename, FrameName::originalFilename},
    {FrameType::iTunesGrouping, FrameName::iTunesGrouping},
    {FrameType::iTunesMovementName, FrameName::iTunesMovementName},
    {FrameType::iTunesPodcastCategory, FrameName::iTunesPodcastCategory},
    {FrameType::iTunesPodcastDescription, FrameName::iTunesPodcastDescription},
    {FrameType::iTunesPodcastID, FrameName::iTunesPodcastID},
    {FrameType::iTunesPodcastKeywords, FrameName::iTunesPodcastKeywords},
});

constexpr std::array integerKinds = std::to_array<NamedKind>({
    {FrameType::recordingYear, FrameName::recordingYear},
    {FrameType::beatsPerMinute, FrameName::beatsPerMinute},
    {FrameType::lengthInMilliseconds, FrameName::lengthInMilliseconds},
    {FrameType::sizeInBytes, FrameName::sizeInBytes},
    {FrameType::iTunesMovementIndex, FrameName::iTunesMovementIndex},
    {FrameType::iTunesMovementCount, FrameName::iTunesMovementCount},
});

struct MadeKind {
  FrameType type;
  OperationPointer (*make)();
};

constexpr std::array structuredKinds = std::to_array<MadeKind>({
    {FrameType::discPosition, ID3DiscPositionFrameContentParsingOperationFactory::make},
    {FrameType::trackPosition, ID3TrackPositionFrameContentParsingOperationFactory::make},
    {FrameType::recordingDayMonth, ID3RecordingDayMonthFrameContentParsingOperationFactory::make},
    {FrameType::recordingHourMinute, ID3RecordingHourMinuteFrameContentParsingOperationFactory::make},
    {FrameType::genre, ID3GenreFrameContentParsingOperationFactory::make},
    {FrameType::recordingDateTime, ID3RecordingTimeFrameContentParsingOperationFactory::make},
    {FrameType::attachedPicture, ID3AttachedPictureFrameContentParsingOperationFactory::make},
});

}  // namespace

FrameContentParsingOperations ID3FrameContentParsingOperationFactory::make() {
  FrameContentParsingOperations operations;
  for (const auto& [type, name] : stringKinds) {
    operations[type] = ID3ParsingOperationForID3FrameWithStringFactory::make(name);
  }
  for (const auto& [type, name] : integerKinds) {
    operations[type] = ID3ParsingOperationForID3FrameWithIntegerFactory::make(name);
  }
  for (const auto& [type, makeOperation] : structuredKinds) operations[type] = makeOperation();
  for (const auto& [type, nameFor] : FrameNamesWithLocalizedContent) {
    operations[type] = ID3LocalizedFrameContentParsingOperationFactory::make(nameFor);
  }
  return operations;
}

}  // namespace ID3TagEditor
