#include "platform/base/Base64.h"

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

/// The two characters for each value of twelve bits.
constexpr auto pairs = [] {
  std::array<std::array<char, 2>, 0x1000> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = {alphabet[i >> 6], alphabet[i & 0x3F]};
  return table;
}();

// Pictures make up nearly all of a document, so most of the text is written eight characters at a time.
constexpr std::size_t wordSize = 6;

/// Returns six bytes as one number.
std::uint64_t wordOf(std::span<const std::uint8_t, wordSize> bytes) {
  return std::uint64_t{bigEndian(bytes.first<4>())} << 16 | bigEndian(bytes.last<2>());
}

/// Returns whether one of the characters that the 48 bits make is a slash, whose six bits are all set.
bool hasSlash(std::uint64_t word) {
  constexpr std::uint64_t lowestBits = 0x041041041041;
  const std::uint64_t two = word & word >> 1;
  return (two & two >> 2 & two >> 4 & lowestBits) != 0;
}

char* append(std::uint64_t word, char* to) {
  for (const unsigned shift : {36U, 24U, 12U, 0U})
    to = std::ranges::copy(pairs[word >> shift & 0xFFF], to).out;
  return to;
}

char* appendEscaped(std::span<const char> characters, char* to) {
  for (const char character : characters) {
    // Avoid a branch, which the processor could not predict.
    *to = '\\';
    to += character == '/' ? 1 : 0;
    *to++ = character;
  }
  return to;
}

}  // namespace

std::size_t encode(ByteView bytes, std::span<char> to) {
  char* end = to.data();
  std::size_t at = 0;
  std::array<char, 8> characters;
  for (; bytes.size() - at >= wordSize; at += wordSize) {
    const std::uint64_t word = wordOf(bytes.subspan(at).first<wordSize>());
    if (hasSlash(word)) {
      append(word, characters.data());
      end = appendEscaped(characters, end);
    } else {
      end = append(word, end);
    }
  }
  if (at < bytes.size()) {
    const ByteView rest = bytes.subspan(at);
    std::array<std::uint8_t, wordSize> padded{};
    std::ranges::copy(rest, padded.begin());
    append(wordOf(padded), characters.data());
    const auto text = std::span(characters).first((rest.size() + 2) / 3 * 4);
    std::ranges::fill(text.last(2 - (rest.size() + 2) % 3), '=');
    end = appendEscaped(text, end);
  }
  return static_cast<std::size_t>(end - to.data());
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
