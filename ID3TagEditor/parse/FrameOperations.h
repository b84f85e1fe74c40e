#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "ID3TagEditor/model/FrameTables.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/parse/ContentAdapters.h"
#include "ID3TagEditor/parse/TextDecoding.h"
#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

// The operations that make frame objects of the bytes of a frame, and their factories.
namespace ID3TagEditor {

/// Receives a parsed frame and the name under which to store it.
using FrameReceiver = std::function<void(FrameName, std::unique_ptr<ID3Frame>)>;

/// Parses frames of one kind.
class FrameContentParsingOperation {
 public:
  virtual ~FrameContentParsingOperation() = default;
  /// Calls `completed` for each frame object that it makes of `frame`, a whole frame with its header. Does
  /// not call it if the frame cannot be read.
  virtual void parse(const platform::SharedBytes& frame, ID3Version version,
                     const FrameReceiver& completed) const = 0;
};

/// Reads a text frame and passes the text to a function, which makes a frame object of it.
class ID3FrameStringContentParsingOperation : public FrameContentParsingOperation {
 public:
  using CreateFrame = std::function<std::pair<FrameName, std::unique_ptr<ID3Frame>>(std::string text)>;

  explicit ID3FrameStringContentParsingOperation(CreateFrame createFrameOperation)
      : createFrameOperation_(std::move(createFrameOperation)) {}
  void parse(const platform::SharedBytes& frame, ID3Version version,
             const FrameReceiver& completed) const override;

 private:
  ID3FrameStringContentParser stringContentParser_ = ID3FrameStringContentParserFactory::make();
  CreateFrame createFrameOperation_;
};

/// Reads a comment or lyrics frame (ID3v2.3.0 §4.9, §4.11). The description ends at the last separator: two
/// zero bytes, in UTF-16 followed by the little-endian mark of the content. Without a separator, everything
/// is content.
class ID3LocalizedFrameContentParsingOperation : public FrameContentParsingOperation {
 public:
  /// `kind` must be `lyricsKind` or `commentKind`.
  explicit ID3LocalizedFrameContentParsingOperation(FrameName::Kind kind) : kind_(kind) {}
  void parse(const platform::SharedBytes& frame, ID3Version version,
             const FrameReceiver& completed) const override;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  ID3FrameStringEncodingDetector stringEncodingDetector_;
  PaddingRemover paddingRemover_;
  FrameName::Kind kind_;
};

/// Reads a picture frame (ID3v2.2.0 §4.15, ID3v2.3.0 §4.15). If the frame's fields lead to a JPEG that is not
/// a JFIF file, such as one from a camera, this is the picture. In all other frames, a picture begins at the
/// signature of its format, wherever that is. A frame that contains both signatures makes two pictures, the
/// JPEG first.
class ID3AttachedPictureFrameContentParsingOperation : public FrameContentParsingOperation {
 public:
  void parse(const platform::SharedBytes& frame, ID3Version version,
             const FrameReceiver& completed) const override;

 private:
  static constexpr std::string_view jpegMagicNumber = "\xFF\xD8\xFF\xE0";
  static constexpr std::string_view pngMagicNumber = platform::pngSignature.substr(0, 4);

  /// Returns the offset of a JPEG without the magic number, found by the frame's fields. Returns nothing if
  /// there is none.
  std::optional<std::size_t> startOfOtherJPEG(platform::ByteView frame, ID3Version version) const;

  ID3FrameConfiguration id3FrameConfiguration_;
  PictureTypeAdapter pictureTypeAdapter_;
};

/// Reads the recording time of a v2.4 tag: a number above 9999 is a count of seconds since 1970 in UTC, any
/// other number a year. The standard's own form "2023-05-17T10:30" is neither: it is read as an empty time.
class ID3RecordingTimeFrameContentParsingOperation : public ID3FrameStringContentParsingOperation {
 public:
  ID3RecordingTimeFrameContentParsingOperation();
};

using FrameContentParsingOperationPointer = std::unique_ptr<FrameContentParsingOperation>;
using FrameContentParsingOperations = std::map<FrameType, FrameContentParsingOperationPointer>;

/// Makes an operation for text frames. `createFrameOperation` turns a text into a frame object.
struct ID3FrameStringContentParsingOperationFactory {
  static FrameContentParsingOperationPointer make(
      ID3FrameStringContentParsingOperation::CreateFrame createFrameOperation);
};

/// Returns an operation that reads the content and stores it under `name`. For pictures, lyrics and comments,
/// only the kind of `name` counts.
FrameContentParsingOperationPointer parsingOperation(FrameContent content, FrameName name);

template <FrameContent content>
struct ParsingOperationFactoryWith {
  static FrameContentParsingOperationPointer make(FrameName name) { return parsingOperation(content, name); }
};
using ID3ParsingOperationForID3FrameWithStringFactory = ParsingOperationFactoryWith<FrameContent::string>;
using ID3ParsingOperationForID3FrameWithIntegerFactory = ParsingOperationFactoryWith<FrameContent::integer>;
using ID3LocalizedFrameContentParsingOperationFactory = ParsingOperationFactoryWith<FrameContent::localized>;

template <FrameType type>
struct ParsingOperationFactoryFor {
  static FrameContentParsingOperationPointer make() {
    return parsingOperation(kindOf(type).content, kindOf(type).name);
  }
};
using ID3DiscPositionFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::discPosition>;
using ID3TrackPositionFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::trackPosition>;
using ID3RecordingDayMonthFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::recordingDayMonth>;
using ID3RecordingHourMinuteFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::recordingHourMinute>;
using ID3GenreFrameContentParsingOperationFactory = ParsingOperationFactoryFor<FrameType::genre>;
using ID3RecordingTimeFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::recordingDateTime>;
using ID3AttachedPictureFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::attachedPicture>;

/// Makes the operations for all kinds of frame.
struct ID3FrameContentParsingOperationFactory {
  static FrameContentParsingOperations make();
};

}  // namespace ID3TagEditor
