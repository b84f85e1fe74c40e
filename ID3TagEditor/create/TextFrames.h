#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ID3TagEditor/create/FrameHeaders.h"
#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/Bytes.h"

// Writes the frames whose content is one text (ID3v2.3.0 §3.3, §4.2): the text that the frame object stands
// for, the body (encoding byte, text, terminator), and the whole frame.
namespace ID3TagEditor {

/// Returns the number of seconds from 1970-01-01 00:00 UTC to the given moment, in decimal. Returns nothing
/// if a part of the moment, down to the minute, is absent, or if it lies outside the calendar.
class ID3TimestampCreator {
 public:
  std::optional<std::string> createFrom(const RecordingDateTime& recordingDateTime) const;
};
using TimestampCreator = ID3TimestampCreator;

// Return the text to write, or nothing if the frame lacks a value that has to be written.
std::optional<std::string> textOf(const ID3FrameWithStringContent& frame);
std::optional<std::string> textOf(const ID3FrameWithIntegerContent& frame);
/// Returns "(17)Rock", "(17)" or "Rock" (ID3v2.3.0 §4.2.1, "TCON").
std::optional<std::string> textOf(const ID3FrameGenre& frame);
/// Returns "5/12" or "5" (ID3v2.3.0 §4.2.1, "TRCK", "TPOS").
std::optional<std::string> textOf(const ID3FramePartOfTotal& frame);
/// Returns "0303" for 3 March (ID3v2.3.0 §4.2.1, "TDAT").
std::optional<std::string> textOf(const ID3FrameRecordingDayMonth& frame);
/// Returns "0905" for five past nine (ID3v2.3.0 §4.2.1, "TIME").
std::optional<std::string> textOf(const ID3FrameRecordingHourMinute& frame);
/// Returns a timestamp, or the year if no timestamp can be made (ID3v2.4.0 frames §4.2.5, "TDRC").
std::optional<std::string> textOf(const ID3FrameRecordingDateTime& frame);

/// Returns the text in UTF-16 with a little-endian mark, or no bytes at all if the text is not UTF-8.
platform::Bytes utf16(std::string_view text);

class PaddingAdderToEndOfContentUsingNullChar {
 public:
  void addPaddingTo(platform::Bytes& content, std::size_t count) const {
    content.resize(content.size() + count);
  }
};
using PaddingAdder = PaddingAdderToEndOfContentUsingNullChar;

class StringToBytesAdapter {
 public:
  virtual ~StringToBytesAdapter() = default;
  virtual platform::Bytes adapt(std::string_view string, ID3Version version) const = 0;

 protected:
  /// Returns the encoding byte, the text and a terminator of that many bytes.
  platform::Bytes body(ID3StringEncoding encoding, ID3Version version, platform::ByteView text,
                       std::size_t terminatorSize) const;

 private:
  PaddingAdder paddingAdder_;
  ID3FrameConfiguration frameConfiguration_;
};

/// Writes UTF-16 with a little-endian mark, for an empty text too. A text that is not UTF-8 is written as an
/// empty text without the mark.
class ID3UTF16StringToByteAdapter : public StringToBytesAdapter {
 public:
  platform::Bytes adapt(std::string_view string, ID3Version version) const override;
};

/// Writes ISO-8859-1, or UTF-16 if the text has other characters.
class ID3ISO88591StringToByteAdapter : public StringToBytesAdapter {
 public:
  platform::Bytes adapt(std::string_view string, ID3Version version) const override;
};

/// Writes text frames.
class ID3FrameFromStringContentCreator {
 public:
  explicit ID3FrameFromStringContentCreator(std::unique_ptr<StringToBytesAdapter> stringToBytesAdapter)
      : stringToBytesAdapter_(std::move(stringToBytesAdapter)) {}
  /// Appends the whole frame to `output`.
  void createFrame(FrameType frameType, ID3Version version, std::string_view content,
                   platform::Bytes& output) const;

 private:
  FrameHeaderCreator frameHeaderCreator_ = ID3FrameHeaderCreatorFactory::make();
  std::unique_ptr<StringToBytesAdapter> stringToBytesAdapter_;
};
using FrameFromStringContentCreator = ID3FrameFromStringContentCreator;

template <class Adapter>
struct FrameFromStringContentCreatorFactory {
  static FrameFromStringContentCreator make() {
    return FrameFromStringContentCreator(std::make_unique<Adapter>());
  }
};
using ID3FrameFromStringContentCreatorWithISO88591EncodingFactory =
    FrameFromStringContentCreatorFactory<ID3ISO88591StringToByteAdapter>;
using ID3FrameFromStringContentCreatorWithUTF16EncodingFactory =
    FrameFromStringContentCreatorFactory<ID3UTF16StringToByteAdapter>;

/// Turns a frame object into a text frame.
class FrameContentAdapter {
 public:
  virtual ~FrameContentAdapter() = default;
  /// Appends the tag's frame `frameName` as a frame of type `frameType`. Appends nothing if the tag has no
  /// such frame, one of another class, or one that lacks a value that has to be written.
  virtual void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                            platform::Bytes& output) const = 0;
};

/// The adapter for one class of frame.
template <class Frame>
class FrameFromContentAdapter : public FrameContentAdapter {
 public:
  explicit FrameFromContentAdapter(FrameFromStringContentCreator frameCreator)
      : frameCreator_(std::move(frameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                    platform::Bytes& output) const override {
    const auto* frame = id3Tag.frame<Frame>(frameName);
    const auto text = frame != nullptr ? textOf(*frame) : std::nullopt;
    if (text) frameCreator_.createFrame(frameType, id3Tag.properties.version, *text, output);
  }

 private:
  FrameFromStringContentCreator frameCreator_;
};
using FrameFromStringContentAdapter = FrameFromContentAdapter<ID3FrameWithStringContent>;
using FrameFromIntegerContentAdapter = FrameFromContentAdapter<ID3FrameWithIntegerContent>;

}  // namespace ID3TagEditor
