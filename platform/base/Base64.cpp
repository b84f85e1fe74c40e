#include "platform/base/Base64.h"

#include <algorithm>
#include <array>
#include <iterator>

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

/// The two characters for each twelve bits.
constexpr auto pairs = [] {
  std::array<std::array<char, 2>, 0x1000> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = {alphabet[i >> 6], alphabet[i & 0x3F]};
  return table;
}();

}  // namespace

std::string encode(ByteView bytes) {
  std::string text((bytes.size() + 2) / 3 * 4, '=');
  char* to = text.data();
  const auto put = [&](std::uint32_t twelveBits) { to = std::ranges::copy(pairs[twelveBits], to).out; };
  const std::size_t whole = bytes.size() - bytes.size() % 3;
  for (std::size_t at = 0; at < whole; at += 3) {
    put(static_cast<std::uint32_t>(bytes[at]) << 4 | bytes[at + 1] >> 4U);
    put((bytes[at + 1] & 0xFU) << 8 | bytes[at + 2]);
  }
  if (whole == bytes.size()) return text;
  const bool hasTwo = bytes.size() - whole == 2;
  const std::uint32_t second = hasTwo ? bytes[whole + 1] : 0;
  put(static_cast<std::uint32_t>(bytes[whole]) << 4 | second >> 4);
  put((second & 0xFU) << 8);
  text.back() = '=';
  if (!hasTwo) *std::next(text.rbegin()) = '=';
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
