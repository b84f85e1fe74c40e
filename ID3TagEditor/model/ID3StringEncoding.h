#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace ID3TagEditor {

/// The encoding of a frame's text. The raw value is the text-encoding byte (ID3v2.4.0 structure §4).
enum class ID3StringEncoding : std::uint8_t { ISO88591 = 0, UTF16 = 1, UTF8 = 3 };

inline constexpr std::array<ID3StringEncoding, 3> allStringEncodings{
    ID3StringEncoding::ISO88591, ID3StringEncoding::UTF16, ID3StringEncoding::UTF8};

constexpr std::uint8_t rawValue(ID3StringEncoding encoding) {
  return static_cast<std::uint8_t>(encoding);
}

constexpr std::optional<ID3StringEncoding> stringEncodingFromRawValue(std::uint8_t raw) {
  for (const ID3StringEncoding encoding : allStringEncodings) {
    if (rawValue(encoding) == raw) return encoding;
  }
  return std::nullopt;
}

}  // namespace ID3TagEditor
