#include "ID3TagEditor/parse/FrameContentParsingOperationFactories.h"

#include <array>

#include "platform/base/EnumerationTable.h"
#include "platform/base/Strings.h"

namespace ID3TagEditor {

using OperationPointer = FrameContentParsingOperationPointer;

OperationPointer ID3FrameStringContentParsingOperationFactory::make(
    ID3FrameStringContentParsingOperation::CreateFrame createFrameOperation) {
  return std::make_unique<ID3FrameStringContentParsingOperation>(std::move(createFrameOperation));
}

namespace {

/// Returns an operation that stores the result of `makeFrame(text)` under `name`.
template <class MakeFrame>
OperationPointer textOperation(FrameName name, MakeFrame makeFrame) {
  return ID3FrameStringContentParsingOperationFactory::make([name, makeFrame](std::string text) {
    using Frame = decltype(makeFrame(text));
    return std::pair<FrameName, std::unique_ptr<ID3Frame>>(
        name, std::make_unique<Frame>(makeFrame(std::move(text))));
  });
}

/// Returns an operation for a text that contains two numbers.
template <class Frame>
OperationPointer coupleOperation(FrameName name) {
  return textOperation(name, [](const std::string& text) {
    const auto [first, second] = ID3CoupleOfNumbersAdapter().adapt(text);
    return Frame(first, second);
  });
}

OperationPointer partOfTotalOperation(FrameName name) {
  return textOperation(name,
                       [](const std::string& text) { return ID3PartOfTotalStringAdapter().adapt(text); });
}

OperationPointer genreOperation(FrameName name) {
  return textOperation(name, [](const std::string& text) { return ID3GenreStringAdapter().adapt(text); });
}

struct Reading {
  FrameContent content;
  OperationPointer (*operationFor)(FrameName name);
};

constexpr std::array readings = std::to_array<Reading>({
    {FrameContent::string, ID3ParsingOperationForID3FrameWithStringFactory::make},
    {FrameContent::integer, ID3ParsingOperationForID3FrameWithIntegerFactory::make},
    {FrameContent::partOfTotal, partOfTotalOperation},
    {FrameContent::genre, genreOperation},
    {FrameContent::dayMonth, coupleOperation<ID3FrameRecordingDayMonth>},
    {FrameContent::hourMinute, coupleOperation<ID3FrameRecordingHourMinute>},
    {FrameContent::dateTime,
     [](FrameName) -> OperationPointer {
       return std::make_unique<ID3RecordingTimeFrameContentParsingOperation>();
     }},
    {FrameContent::picture,
     [](FrameName) -> OperationPointer {
       return std::make_unique<ID3AttachedPictureFrameContentParsingOperation>();
     }},
    {FrameContent::localized,
     [](FrameName name) { return ID3LocalizedFrameContentParsingOperationFactory::make(name.kind()); }},
});
static_assert(platform::hasARowForEachCase(readings, &Reading::content, lastFrameContent));

}  // namespace

OperationPointer ID3ParsingOperationForID3FrameWithStringFactory::make(FrameName frameName) {
  return textOperation(frameName,
                       [](std::string text) { return ID3FrameWithStringContent(std::move(text)); });
}

OperationPointer ID3ParsingOperationForID3FrameWithIntegerFactory::make(FrameName frameName) {
  return textOperation(frameName, [](const std::string& text) {
    return ID3FrameWithIntegerContent(platform::Strings::decimalInteger(text));
  });
}

OperationPointer ID3LocalizedFrameContentParsingOperationFactory::make(FrameName::Kind kind) {
  return std::make_unique<ID3LocalizedFrameContentParsingOperation>(kind);
}

OperationPointer FrameKindParsingOperationFactory::make(const FrameKind& kind) {
  return readings[static_cast<std::size_t>(kind.content)].operationFor(kind.name);
}

FrameContentParsingOperations ID3FrameContentParsingOperationFactory::make() {
  FrameContentParsingOperations operations;
  for (const FrameKind& kind : frameKinds) {
    operations[kind.type] = FrameKindParsingOperationFactory::make(kind);
  }
  return operations;
}

}  // namespace ID3TagEditor
