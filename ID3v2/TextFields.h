#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Bytes.h"

/// The texts in frames (ID3v2.4.0 structure §4, ID3v2.3.0 §3.3).
namespace ID3v2 {

/// As the first byte of a frame's content names it.
enum class TextEncoding : std::uint8_t { latin1, UTF16, UTF16BigEndian, UTF8 };

/// Bytes cut in two behind a terminator.
struct Cut {
  platform::ByteView text;
  platform::ByteView rest;
  bool isTerminated = false;
};

/// In front of the first zero byte and behind it.
Cut cutAtZero(platform::ByteView bytes);

/// Decodes the texts of one frame in their order. Of UTF-16 texts without a mark it takes the byte order of
/// the last mark in the frame, else what the first character suggests, else little-endian.
class TextDecoder {
 public:
  /// Nothing for a byte that names no encoding.
  static std::optional<TextDecoder> forEncoding(std::uint8_t encoding);

  TextEncoding encoding() const { return encoding_; }
  /// In front of the first terminator of the encoding and behind it.
  Cut cut(platform::ByteView bytes) const;
  /// One text; nothing for bytes that the encoding does not allow.
  std::optional<std::string> text(platform::ByteView bytes);
  /// All values up to the end with U+0000 between them, without the terminators at the end.
  std::optional<std::string> values(platform::ByteView bytes);

 private:
  explicit TextDecoder(TextEncoding encoding)
      : encoding_(encoding), isBigEndian_(encoding == TextEncoding::UTF16BigEndian) {}

  TextEncoding encoding_;
  bool isBigEndian_;
  bool isOrderKnown_ = false;
};

/// Returns ISO-8859-1 if all the texts fit, else UTF-16 for v2.3 and UTF-8 for v2.4.
TextEncoding encodingFor(std::initializer_list<std::string_view> texts, std::uint8_t version);

/// Appends the text that ends a frame, not in UTF-16 without a mark; in UTF-16 each of its values has a mark.
/// Only an empty one has a terminator: readers drop frames that end where a text should start.
void appendLastText(platform::Bytes& bytes, TextEncoding encoding, std::string_view text);

/// Appends a text and its terminator, likewise. It must not contain U+0000.
void appendTerminated(platform::Bytes& bytes, TextEncoding encoding, std::string_view text);

}  // namespace ID3v2
