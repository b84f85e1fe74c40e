#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ID3TagEditor/model/ID3FrameConfiguration.h"
#include "platform/base/Bytes.h"

// How the bytes of a frame become text (ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). A frame is given whole,
// header included.
namespace ID3TagEditor {

/// A way to turn bytes into text.
enum class CharacterEncoding : std::uint8_t { ISOLatin1, UTF16, UTF8 };

/// Nothing when the bytes are not text of that encoding.
std::optional<std::string> decode(platform::ByteView bytes, CharacterEncoding encoding);

class ID3StringEncodingConverter {
 public:
  /// An encoding that the version does not have, and no encoding at all, are read as ISO-8859-1.
  CharacterEncoding convert(std::optional<ID3StringEncoding> id3Encoding, ID3Version version) const;
};

class ID3FrameStringEncodingDetector {
 public:
  /// What the frame's text-encoding byte stands for. The frame must hold that byte.
  CharacterEncoding detect(platform::ByteView frame, ID3Version version) const;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  ID3StringEncodingConverter id3StringEncodingConverter_;
};

class PaddingRemover {
 public:
  virtual ~PaddingRemover() = default;
  virtual std::string removeFrom(std::string string) const = 0;
};

/// Removes the U+0000 characters at both ends, and nothing else.
class PaddingRemoverUsingTrimming : public PaddingRemover {
 public:
  std::string removeFrom(std::string string) const override;
};

/// Reads the text of a text frame.
class ID3FrameStringContentParser {
 public:
  /// Nothing when no byte follows the encoding byte, or when the bytes are text neither in the encoding that
  /// the frame names nor in UTF-8.
  std::optional<std::string> parse(platform::ByteView frame, ID3Version version) const;

 private:
  ID3FrameStringEncodingDetector stringEncodingDetector_;
  PaddingRemoverUsingTrimming paddingRemover_;
  ID3FrameConfiguration id3FrameConfiguration_;
};

struct ID3FrameStringContentParserFactory {
  static ID3FrameStringContentParser make() { return {}; }
};

}  // namespace ID3TagEditor
