#include "ID3TagEditor/parse/TextDecoding.h"

#include "platform/base/Strings.h"

namespace ID3TagEditor {

namespace Strings = platform::Strings;

std::optional<std::string> decode(platform::ByteView bytes, CharacterEncoding encoding) {
  switch (encoding) {
    case CharacterEncoding::UTF16:
      return Strings::fromUTF16(bytes);
    case CharacterEncoding::UTF8:
      return Strings::fromUTF8(bytes);
    case CharacterEncoding::ISOLatin1:
      break;
  }
  return Strings::fromLatin1(bytes);
}

CharacterEncoding ID3StringEncodingConverter::convert(std::optional<ID3StringEncoding> id3Encoding,
                                                      ID3Version version) const {
  if (id3Encoding == ID3StringEncoding::UTF16) return CharacterEncoding::UTF16;
  if (id3Encoding == ID3StringEncoding::UTF8 && version == ID3Version::version4)
    return CharacterEncoding::UTF8;
  return CharacterEncoding::ISOLatin1;
}

CharacterEncoding ID3FrameStringEncodingDetector::detect(platform::ByteView frame, ID3Version version) const {
  const std::uint8_t encodingByte = frame[id3FrameConfiguration_.encodingPositionFor(version)];
  return id3StringEncodingConverter_.convert(stringEncodingFromRawValue(encodingByte), version);
}

std::string PaddingRemoverUsingTrimming::removeFrom(std::string string) const {
  Strings::trim(string, Strings::trimmingNulls(string));
  return string;
}

std::optional<std::string> ID3FrameStringContentParser::parse(platform::ByteView frame,
                                                              ID3Version version) const {
  const std::size_t textStart =
      id3FrameConfiguration_.headerSizeFor(version) + ID3FrameConfiguration::encodingSize();
  if (frame.size() <= textStart) return std::nullopt;
  const platform::ByteView content = frame.subspan(textStart);
  std::optional<std::string> text = decode(content, stringEncodingDetector_.detect(frame, version));
  if (!text) text = Strings::fromUTF8(content);
  if (!text) return std::nullopt;
  return paddingRemover_.removeFrom(std::move(*text));
}

}  // namespace ID3TagEditor
