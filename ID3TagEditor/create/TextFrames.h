#pragma once

#include <memory>
#include <string_view>

#include "ID3TagEditor/create/FrameHeaders.h"
#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/Bytes.h"

// The bodies of text frames (ID3v2.3.0 §3.3, §4.2): encoding byte, text, terminator.
namespace ID3TagEditor {

/// Returns the text in UTF-16 with a little-endian mark, or no bytes at all if the text is not UTF-8.
platform::Bytes utf16(std::string_view text);

class PaddingAdder {
 public:
  virtual ~PaddingAdder() = default;
  virtual void addPaddingTo(platform::Bytes& content, std::size_t count) const = 0;
};

class PaddingAdderToEndOfContentUsingNullChar : public PaddingAdder {
 public:
  void addPaddingTo(platform::Bytes& content, std::size_t count) const override {
    content.resize(content.size() + count);
  }
};

class StringToBytesAdapter {
 public:
  virtual ~StringToBytesAdapter() = default;
  virtual platform::Bytes adapt(std::string_view string, ID3Version version) const = 0;
};

/// Writes UTF-16 with a little-endian mark, for an empty text too. A text that is not UTF-8 is written as an
/// empty text without the mark.
class ID3UTF16StringToByteAdapter : public StringToBytesAdapter {
 public:
  explicit ID3UTF16StringToByteAdapter(std::unique_ptr<PaddingAdder> paddingAdder)
      : paddingAdder_(std::move(paddingAdder)) {}
  platform::Bytes adapt(std::string_view string, ID3Version version) const override;

 private:
  std::unique_ptr<PaddingAdder> paddingAdder_;
  ID3FrameConfiguration frameConfiguration_;
};

/// Writes ISO-8859-1, or UTF-16 if the text has other characters.
class ID3ISO88591StringToByteAdapter : public StringToBytesAdapter {
 public:
  explicit ID3ISO88591StringToByteAdapter(std::unique_ptr<PaddingAdder> paddingAdder)
      : paddingAdder_(std::move(paddingAdder)) {}
  platform::Bytes adapt(std::string_view string, ID3Version version) const override;

 private:
  std::unique_ptr<PaddingAdder> paddingAdder_;
  ID3FrameConfiguration frameConfiguration_;
};

/// Writes text frames.
class FrameFromStringContentCreator {
 public:
  virtual ~FrameFromStringContentCreator() = default;
  /// Appends the whole frame to `output`.
  virtual void createFrame(FrameType frameType, ID3Version version, std::string_view content,
                           platform::Bytes& output) const = 0;
};

class ID3FrameFromStringContentCreator : public FrameFromStringContentCreator {
 public:
  ID3FrameFromStringContentCreator(std::unique_ptr<FrameHeaderCreator> frameHeaderCreator,
                                   std::unique_ptr<StringToBytesAdapter> stringToBytesAdapter)
      : frameHeaderCreator_(std::move(frameHeaderCreator)),
        stringToBytesAdapter_(std::move(stringToBytesAdapter)) {}
  void createFrame(FrameType frameType, ID3Version version, std::string_view content,
                   platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameHeaderCreator> frameHeaderCreator_;
  std::unique_ptr<StringToBytesAdapter> stringToBytesAdapter_;
};

struct ID3FrameFromStringContentCreatorWithISO88591EncodingFactory {
  static std::unique_ptr<FrameFromStringContentCreator> make();
};

struct ID3FrameFromStringContentCreatorWithUTF16EncodingFactory {
  static std::unique_ptr<FrameFromStringContentCreator> make();
};

/// Serialises the frames of one kind.
class ID3FrameCreator {
 public:
  virtual ~ID3FrameCreator() = default;
  /// Appends the tag's frames of this kind to `output`: none, one or several whole frames. Skips frames of
  /// the wrong class and frames that lack a value that has to be written.
  virtual void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const = 0;
};

/// Turns the content of a frame object into a text frame.
class FrameContentAdapter {
 public:
  virtual ~FrameContentAdapter() = default;
  /// Appends the tag's frame `frameName` as a frame of type `frameType`. Appends nothing if the tag has no
  /// such frame or one of another class.
  virtual void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                            platform::Bytes& output) const = 0;
};

class FrameFromStringContentAdapter : public FrameContentAdapter {
 public:
  explicit FrameFromStringContentAdapter(std::unique_ptr<FrameFromStringContentCreator> frameCreator)
      : frameCreator_(std::move(frameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                    platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameFromStringContentCreator> frameCreator_;
};

/// Writes frames with a value; skips those without.
class FrameFromIntegerContentAdapter : public FrameContentAdapter {
 public:
  explicit FrameFromIntegerContentAdapter(std::unique_ptr<FrameFromStringContentCreator> frameCreator)
      : frameCreator_(std::move(frameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                    platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameFromStringContentCreator> frameCreator_;
};

/// Writes the frame of one name.
class ID3FrameContentCreator : public ID3FrameCreator {
 public:
  ID3FrameContentCreator(std::unique_ptr<FrameContentAdapter> frameContentAdapter, FrameName frameName,
                         FrameType frameType)
      : frameContentAdapter_(std::move(frameContentAdapter)), frameName_(frameName), frameType_(frameType) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameContentAdapter> frameContentAdapter_;
  FrameName frameName_;
  FrameType frameType_;
};

}  // namespace ID3TagEditor
