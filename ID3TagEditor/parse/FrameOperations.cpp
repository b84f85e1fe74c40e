#include "ID3TagEditor/parse/FrameOperations.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/EnumerationTable.h"
#include "platform/base/Strings.h"

namespace ID3TagEditor {

namespace Strings = platform::Strings;
using platform::ByteView;
using namespace std::string_view_literals;

namespace {

constexpr std::size_t languageSize = 3;
constexpr std::array<std::uint8_t, 4> separatorWithMark{0x00, 0x00, 0xFF, 0xFE};
constexpr std::size_t terminatorSize = 2;

struct DescriptionAndContent {
  ByteView description;
  ByteView content;
};

DescriptionAndContent split(ByteView body, CharacterEncoding encoding) {
  ByteView separator(separatorWithMark);
  if (encoding != CharacterEncoding::UTF16) separator = separator.first(terminatorSize);
  const auto last = std::find_end(body.begin(), body.end(), separator.begin(), separator.end());
  if (last == body.end()) return {{}, body};
  const auto start = static_cast<std::size_t>(last - body.begin());
  // The mark in the separator belongs to the content. A separator without a mark is left at the start of the
  // content, which is trimmed later.
  const std::size_t contentStart = start + separator.size() - terminatorSize;
  return {body.first(start), body.subspan(contentStart)};
}

std::string decodeOrComplain(ByteView bytes, CharacterEncoding encoding) {
  return decode(bytes, encoding).value_or("Invalid content");
}

/// Returns the offset after the terminator of the text that begins at `start`. A terminator is `width` zero
/// bytes at a multiple of `width` bytes from `start`. Returns nothing if there is no terminator.
std::optional<std::size_t> behindText(std::string_view bytes, std::size_t start, std::size_t width) {
  const std::string_view terminator = "\0\0"sv.substr(0, width);
  for (std::size_t at = start; at + width <= bytes.size(); at += width) {
    if (bytes.substr(at, width) == terminator) return at + width;
  }
  return std::nullopt;
}

/// Returns the time that the text stands for, in the rules of ID3RecordingTimeFrameContentParsingOperation.
RecordingDateTime recordingDateTime(std::string_view text) {
  constexpr double lastYear = 9999.0;
  // The first second after the last day that the calendar can represent.
  constexpr auto calendarEnd =
      std::chrono::sys_days(std::chrono::year::max() / std::chrono::December / 31) + std::chrono::days(1);
  constexpr auto endOfTime = static_cast<double>(
      std::chrono::duration_cast<std::chrono::seconds>(calendarEnd.time_since_epoch()).count());

  const std::optional<double> number = Strings::floatingPoint(text);
  if (!number || !(*number > lastYear) || *number >= endOfTime) {
    return {RecordingDate{.day = {}, .month = {}, .year = Strings::decimalInteger(text)}, RecordingTime{}};
  }
  const std::chrono::sys_seconds moment{std::chrono::seconds(static_cast<std::int64_t>(*number))};
  const auto midnight = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(midnight);
  const std::chrono::hh_mm_ss time(moment - midnight);
  return {RecordingDate{.day = static_cast<unsigned>(date.day()),
                        .month = static_cast<unsigned>(date.month()),
                        .year = static_cast<int>(date.year())},
          RecordingTime{.hour = time.hours().count(), .minute = time.minutes().count()}};
}

/// Returns a function that makes a frame object with the result of `makeFrame(text)`, under `name`.
template <class MakeFrame>
ID3FrameStringContentParsingOperation::CreateFrame named(FrameName name, MakeFrame makeFrame) {
  return [name, makeFrame](std::string text) {
    using Frame = decltype(makeFrame(text));
    return std::pair<FrameName, std::unique_ptr<ID3Frame>>(
        name, std::make_unique<Frame>(makeFrame(std::move(text))));
  };
}

}  // namespace

void ID3FrameStringContentParsingOperation::parse(const platform::SharedBytes& frame, ID3Version version,
                                                  const FrameReceiver& completed) const {
  std::optional<std::string> text = stringContentParser_.parse(frame, version);
  if (!text) return;
  auto [name, parsed] = createFrameOperation_(std::move(*text));
  completed(name, std::move(parsed));
}

void ID3LocalizedFrameContentParsingOperation::parse(const platform::SharedBytes& frame, ID3Version version,
                                                     const FrameReceiver& completed) const {
  const ByteView bytes = frame;
  const std::size_t languageStart =
      id3FrameConfiguration_.headerSizeFor(version) + ID3FrameConfiguration::encodingSize();
  if (bytes.size() < languageStart + languageSize) return;
  const CharacterEncoding encoding = stringEncodingDetector_.detect(bytes, version);
  const auto [description, content] = split(bytes.subspan(languageStart + languageSize), encoding);
  const auto code = platform::charactersOf(bytes.subspan(languageStart, languageSize));
  const auto language = languageFromRawValue(code).value_or(ID3FrameContentLanguage::unknown);
  completed(FrameName::localized(kind_, language),
            std::make_unique<ID3FrameWithLocalizedContent>(
                language, decodeOrComplain(description, encoding),
                paddingRemover_.removeFrom(decodeOrComplain(content, encoding))));
}

std::optional<std::size_t> ID3AttachedPictureFrameContentParsingOperation::startOfOtherJPEG(
    ByteView frame, ID3Version version) const {
  constexpr std::size_t formatSize = 3;
  constexpr std::size_t typeSize = 1;
  // UTF-16 with a mark and without one (ID3v2.4.0 structure §4).
  constexpr std::string_view wideEncodings = "\1\2";
  const std::string_view bytes = platform::charactersOf(frame);
  const std::size_t encoding = id3FrameConfiguration_.encodingPositionFor(version);
  const std::size_t format = encoding + ID3FrameConfiguration::encodingSize();
  const auto type = version == ID3Version::version2 ? format + formatSize : behindText(bytes, format, 1);
  if (!type || *type >= bytes.size()) return std::nullopt;
  const std::size_t width = wideEncodings.find(bytes[encoding]) != std::string_view::npos ? 2 : 1;
  const auto start = behindText(bytes, *type + typeSize, width);
  if (!start) return std::nullopt;
  const std::string_view picture = bytes.substr(*start);
  const bool isOtherJPEG = picture.starts_with(platform::jpegSignature) &&
                           picture.size() > platform::jpegSignature.size() &&
                           !picture.starts_with(jpegMagicNumber);
  return isOtherJPEG ? start : std::nullopt;
}

void ID3AttachedPictureFrameContentParsingOperation::parse(const platform::SharedBytes& frame,
                                                           ID3Version version,
                                                           const FrameReceiver& completed) const {
  struct Signature {
    ID3PictureFormat format;
    std::string_view magicNumber;
  };
  static constexpr std::array<Signature, 2> signatures{
      {{ID3PictureFormat::jpeg, jpegMagicNumber}, {ID3PictureFormat::png, pngMagicNumber}}};

  const auto deliver = [&](std::size_t start, ID3PictureFormat format) {
    const auto type = pictureTypeAdapter_.adapt(frame, format, version);
    if (!type) return;
    completed(
        FrameName::attachedPicture(*type),
        std::make_unique<ID3FrameAttachedPicture>(frame.slice(start, frame.size() - start), *type, format));
  };
  if (const auto start = startOfOtherJPEG(frame, version)) {
    deliver(*start, ID3PictureFormat::jpeg);
    return;
  }
  for (const Signature& signature : signatures) {
    const std::size_t start = platform::charactersOf(frame).find(signature.magicNumber);
    if (start != std::string_view::npos) deliver(start, signature.format);
  }
}

ID3RecordingTimeFrameContentParsingOperation::ID3RecordingTimeFrameContentParsingOperation()
    : ID3FrameStringContentParsingOperation(named(FrameName::recordingDateTime, [](const std::string& text) {
        return ID3FrameRecordingDateTime(recordingDateTime(text));
      })) {
}

using OperationPointer = FrameContentParsingOperationPointer;

OperationPointer ID3FrameStringContentParsingOperationFactory::make(
    ID3FrameStringContentParsingOperation::CreateFrame createFrameOperation) {
  return std::make_unique<ID3FrameStringContentParsingOperation>(std::move(createFrameOperation));
}

namespace {

template <auto makeFrame>
OperationPointer textOperation(FrameName name) {
  return ID3FrameStringContentParsingOperationFactory::make(named(name, makeFrame));
}

/// Makes a frame of a text that contains two numbers.
template <class Frame>
Frame coupleIn(const std::string& text) {
  const auto [first, second] = ID3CoupleOfNumbersAdapter().adapt(text);
  return Frame(first, second);
}

struct Reading {
  FrameContent content;
  OperationPointer (*operationFor)(FrameName name);
};

constexpr std::array readings = std::to_array<Reading>({
    {FrameContent::string,
     textOperation<[](std::string text) { return ID3FrameWithStringContent(std::move(text)); }>},
    {FrameContent::integer,
     textOperation<[](const std::string& text) {
       return ID3FrameWithIntegerContent(Strings::decimalInteger(text));
     }>},
    {FrameContent::partOfTotal,
     textOperation<[](const std::string& text) { return PartOfTotalStringAdapter().adapt(text); }>},
    {FrameContent::genre,
     textOperation<[](const std::string& text) { return ID3GenreStringAdapter().adapt(text); }>},
    {FrameContent::dayMonth, textOperation<coupleIn<ID3FrameRecordingDayMonth>>},
    {FrameContent::hourMinute, textOperation<coupleIn<ID3FrameRecordingHourMinute>>},
    {FrameContent::dateTime,
     [](FrameName) -> OperationPointer {
       return std::make_unique<ID3RecordingTimeFrameContentParsingOperation>();
     }},
    {FrameContent::picture,
     [](FrameName) -> OperationPointer {
       return std::make_unique<ID3AttachedPictureFrameContentParsingOperation>();
     }},
    {FrameContent::localized,
     [](FrameName name) -> OperationPointer {
       return std::make_unique<ID3LocalizedFrameContentParsingOperation>(name.kind());
     }},
});
static_assert(platform::hasARowForEachCase(readings, &Reading::content, lastFrameContent));

}  // namespace

OperationPointer parsingOperation(FrameContent content, FrameName name) {
  return readings[static_cast<std::size_t>(content)].operationFor(name);
}

FrameContentParsingOperations ID3FrameContentParsingOperationFactory::make() {
  FrameContentParsingOperations operations;
  for (const FrameKind& kind : frameKinds) operations[kind.type] = parsingOperation(kind.content, kind.name);
  return operations;
}

}  // namespace ID3TagEditor
