#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Bytes.h"

/// Texts in frames (ID3v2.4.0 structure §4, ID3v2.3.0 §3.3).
namespace ID3v2 {

/// The text encodings. The value is the first byte of a frame's content.
enum class TextEncoding : std::uint8_t { latin1, UTF16, UTF16BigEndian, UTF8 };

/// Bytes that are split after a terminator. Neither part contains the terminator.
struct Cut {
  platform::ByteView text;
  platform::ByteView rest;
  bool isTerminated = false;
};

/// Splits the bytes at the first zero byte.
Cut cutAtZero(platform::ByteView bytes);

/// Decodes the texts of one frame, in their order. A UTF-16 text without a mark has the byte order of the
/// last mark in the frame. If there was none, the first character suggests the order; else it is
/// little-endian.
class TextDecoder {
 public:
  /// Returns nothing if the byte is not a known encoding.
  static std::optional<TextDecoder> forEncoding(std::uint8_t encoding);

  TextEncoding encoding() const { return encoding_; }
  /// Splits the bytes at the first terminator of the encoding.
  Cut cut(platform::ByteView bytes) const;
  /// Returns one text, or nothing if the bytes are invalid in the encoding.
  std::optional<std::string> text(platform::ByteView bytes);
  /// Returns all values in the bytes, separated by U+0000, without terminators at the end. Returns nothing if
  /// the bytes are invalid in the encoding.
  std::optional<std::string> values(platform::ByteView bytes);

 private:
  explicit TextDecoder(TextEncoding encoding)
      : encoding_(encoding), isBigEndian_(encoding == TextEncoding::UTF16BigEndian) {}

  TextEncoding encoding_;
  bool isBigEndian_;
  bool isOrderKnown_ = false;
};

/// Returns ISO-8859-1 if all texts can be written in it, else UTF-16 for v2.3 and UTF-8 for v2.4.
TextEncoding encodingFor(std::initializer_list<std::string_view> texts, std::uint8_t version);

/// Appends the last text of a frame. In UTF-16, each of its values has a mark; UTF-16 without a mark is not
/// supported. Only an empty text gets a terminator: readers drop frames that end where a text should start.
void appendLastText(platform::Bytes& bytes, TextEncoding encoding, std::string_view text);

/// Appends a text and its terminator, in the same encodings. The text must not contain U+0000.
void appendTerminated(platform::Bytes& bytes, TextEncoding encoding, std::string_view text);

}  // namespace ID3v2
