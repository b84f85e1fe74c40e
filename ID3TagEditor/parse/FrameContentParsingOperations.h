#pragma once

#include <functional>
#include <string>
#include <utility>

#include "ID3TagEditor/parse/ContentAdapters.h"
#include "ID3TagEditor/parse/FrameContentParsingOperation.h"
#include "ID3TagEditor/parse/TextDecoding.h"
#include "platform/base/Formats.h"

namespace ID3TagEditor {

/// Reads a text frame and leaves it to a function what its text means.
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

/// Reads a comment or lyrics frame (ID3v2.3.0 §4.9, §4.11). Only a two-byte terminator parts the description
/// from the content, for UTF-16 together with the content's little-endian mark; without one all is content.
class ID3LocalizedFrameContentParsingOperation : public FrameContentParsingOperation {
 public:
  /// For lyrics or comments, as `kind` tells.
  explicit ID3LocalizedFrameContentParsingOperation(FrameName::Kind kind) : kind_(kind) {}
  void parse(const platform::SharedBytes& frame, ID3Version version,
             const FrameReceiver& completed) const override;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  ID3FrameStringEncodingDetector stringEncodingDetector_;
  PaddingRemoverUsingTrimming paddingRemover_;
  FrameName::Kind kind_;
};

/// Reads a picture frame (ID3v2.2.0 §4.15, ID3v2.3.0 §4.15). Where the frame's fields lead to a JPEG that
/// does not start as a JFIF file does, such as one from a camera, that is the picture. In every other frame
/// it is what follows from a format's signature on, wherever that stands; a frame that holds both signatures
/// is delivered for each of them, JPEG first.
class ID3AttachedPictureFrameContentParsingOperation : public FrameContentParsingOperation {
 public:
  void parse(const platform::SharedBytes& frame, ID3Version version,
             const FrameReceiver& completed) const override;

 private:
  static constexpr std::string_view jpegMagicNumber = "\xFF\xD8\xFF\xE0";
  static constexpr std::string_view pngMagicNumber = platform::pngSignature.substr(0, 4);

  /// Where a JPEG that lacks the magic number begins by the frame's fields; nothing when there is none.
  std::optional<std::size_t> startOfOtherJPEG(platform::ByteView frame, ID3Version version) const;

  ID3FrameConfiguration id3FrameConfiguration_;
  ID3PictureTypeAdapter pictureTypeAdapter_;
};

/// Reads the recording time of a v2.4 tag: a count of seconds since 1970 in UTC when the number is above
/// 9999, else a year. The standard's own form "2023-05-17T10:30" is neither and gives an empty time.
class ID3RecordingTimeFrameContentParsingOperation : public FrameContentParsingOperation {
 public:
  void parse(const platform::SharedBytes& frame, ID3Version version,
             const FrameReceiver& completed) const override;
  static RecordingDateTime recordingDateTime(std::string_view text);

 private:
  ID3FrameStringContentParser stringContentParser_ = ID3FrameStringContentParserFactory::make();
};

}  // namespace ID3TagEditor
