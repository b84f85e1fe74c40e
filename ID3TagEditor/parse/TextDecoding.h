#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "platform/base/Bytes.h"

// Turn the bytes of a frame into text (ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). A `frame` is a whole frame,
// header included.
namespace ID3TagEditor {

/// The encodings in which the engine reads texts.
enum class CharacterEncoding : std::uint8_t { ISOLatin1, UTF16, UTF8 };

/// Returns nothing if the bytes are not valid in the encoding.
std::optional<std::string> decode(platform::ByteView bytes, CharacterEncoding encoding);

class ID3StringEncodingConverter {
 public:
  /// Returns ISO-8859-1 if the encoding is absent or not part of the version.
  CharacterEncoding convert(std::optional<ID3StringEncoding> id3Encoding, ID3Version version) const;
};

class ID3FrameStringEncodingDetector {
 public:
  /// Returns the encoding that the text-encoding byte of the frame names. The frame must contain that byte.
  CharacterEncoding detect(platform::ByteView frame, ID3Version version) const;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  ID3StringEncodingConverter id3StringEncodingConverter_;
};

/// Removes the U+0000 characters at both ends, and nothing else.
class PaddingRemoverUsingTrimming {
 public:
  std::string removeFrom(std::string string) const;
};
using PaddingRemover = PaddingRemoverUsingTrimming;

/// Reads the text of a text frame.
class ID3FrameStringContentParser {
 public:
  /// Returns nothing if no byte follows the encoding byte, or if the bytes are valid neither in the encoding
  /// that the frame names nor in UTF-8.
  std::optional<std::string> parse(platform::ByteView frame, ID3Version version) const;

 private:
  ID3FrameStringEncodingDetector stringEncodingDetector_;
  PaddingRemover paddingRemover_;
  ID3FrameConfiguration id3FrameConfiguration_;
};

struct ID3FrameStringContentParserFactory {
  static ID3FrameStringContentParser make() { return {}; }
};

}  // namespace ID3TagEditor
