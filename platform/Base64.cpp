#include "platform/Base64.h"

#include <algorithm>
#include <array>

namespace platform::Base64 {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t foreign = 0xFF;

constexpr std::array<std::uint8_t, 256> values = [] {
  std::array<std::uint8_t, 256> table{};
  table.fill(foreign);
  for (std::size_t i = 0; i < alphabet.size(); ++i) {
    table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
  }
  return table;
}();

}  // namespace

std::string encode(ByteView bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) group = group << 8 | (i < count ? bytes[at + i] : 0U);
    for (std::size_t i = 0; i < 4; ++i) {
      text.push_back(i <= count ? alphabet[group >> (18 - 6 * i) & 0x3F] : '=');
    }
  }
  return text;
}

std::optional<Bytes> decode(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') ++padding;
  Bytes bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (std::size_t at = 0; at < text.size(); at += 4) {
    const std::size_t missing = at + 4 == text.size() ? padding : 0;
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::uint8_t value = i < 4 - missing ? values[static_cast<unsigned char>(text[at + i])] : 0;
      if (value == foreign) return std::nullopt;
      group = group << 6 | value;
    }
    for (std::size_t i = 0; i < 3 - missing; ++i)
      bytes.push_back(static_cast<std::uint8_t>(group >> (16 - 8 * i)));
  }
  return bytes;
}

}  // namespace platform::Base64
