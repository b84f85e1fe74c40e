#include "ID3v2/TextFields.h"

#include <algorithm>
#include <utility>

#include "platform/base/Strings.h"

namespace ID3v2 {

namespace {

namespace Strings = platform::Strings;
using platform::Bytes;
using platform::ByteView;

bool isWide(TextEncoding encoding) {
  return encoding == TextEncoding::UTF16 || encoding == TextEncoding::UTF16BigEndian;
}

bool startsWith(ByteView bytes, std::uint8_t first, std::uint8_t second) {
  return bytes.size() >= 2 && bytes[0] == first && bytes[1] == second;
}

/// Decodes UTF-16 without a mark. If the last character is cut in half, a zero byte completes it.
std::optional<std::string> fromUTF16(ByteView bytes, bool isBigEndian) {
  Bytes marked;
  marked.reserve(bytes.size() + 3);
  marked.push_back(isBigEndian ? 0xFE : 0xFF);
  marked.push_back(isBigEndian ? 0xFF : 0xFE);
  platform::append(marked, bytes);
  if (marked.size() % 2 != 0) marked.push_back(0);
  return Strings::fromUTF16(marked);
}

void appendWideValues(Bytes& bytes, std::string_view text) {
  for (;;) {
    const std::size_t end = std::min(text.find('\0'), text.size());
    platform::append(bytes, Strings::toUTF16WithMark(text.substr(0, end)).value_or(Bytes()));
    if (end == text.size()) return;
    bytes.insert(bytes.end(), {0, 0});
    text.remove_prefix(end + 1);
  }
}

}  // namespace

Cut cutAtZero(ByteView bytes) {
  const std::size_t end = platform::charactersOf(bytes).find('\0');
  if (end == std::string_view::npos) return {.text = bytes, .rest = {}};
  return {.text = bytes.first(end), .rest = bytes.subspan(end + 1), .isTerminated = true};
}

std::optional<TextDecoder> TextDecoder::forEncoding(std::uint8_t encoding) {
  if (encoding > static_cast<std::uint8_t>(TextEncoding::UTF8)) return std::nullopt;
  return TextDecoder(static_cast<TextEncoding>(encoding));
}

Cut TextDecoder::cut(ByteView bytes) const {
  if (!isWide(encoding_)) return cutAtZero(bytes);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    if (bytes[i] == 0 && bytes[i + 1] == 0) {
      return {.text = bytes.first(i), .rest = bytes.subspan(i + 2), .isTerminated = true};
    }
  }
  return {.text = bytes, .rest = {}};
}

std::optional<std::string> TextDecoder::text(ByteView bytes) {
  switch (encoding_) {
    case TextEncoding::latin1:
      return Strings::fromLatin1(bytes);
    case TextEncoding::UTF8:
      return Strings::fromUTF8(bytes);
    case TextEncoding::UTF16BigEndian:
      return fromUTF16(bytes, true);
    case TextEncoding::UTF16:
      break;
  }
  const bool hasBigEndianMark = startsWith(bytes, 0xFE, 0xFF);
  if (hasBigEndianMark || startsWith(bytes, 0xFF, 0xFE)) {
    isBigEndian_ = hasBigEndianMark;
    isOrderKnown_ = true;
    if (bytes.size() % 2 == 0) return Strings::fromUTF16(bytes);
    bytes = bytes.subspan(2);
  } else if (!isOrderKnown_ && bytes.size() >= 2) {
    isBigEndian_ = bytes[0] == 0 && bytes[1] != 0;
  }
  return fromUTF16(bytes, isBigEndian_);
}

std::optional<std::string> TextDecoder::values(ByteView bytes) {
  std::string values;
  if (isWide(encoding_)) {
    // Each value can have a mark of its own.
    for (bool isFirst = true; !bytes.empty(); isFirst = false) {
      const Cut next = cut(bytes);
      auto value = text(next.text);
      if (!value) return std::nullopt;
      if (isFirst) {
        values = std::move(*value);
      } else {
        values.append(1, '\0').append(*value);
      }
      bytes = next.rest;
    }
  } else {
    auto all = text(bytes);
    if (!all) return std::nullopt;
    values = std::move(*all);
  }
  values.erase(values.find_last_not_of('\0') + 1);
  return values;
}

TextEncoding encodingFor(std::initializer_list<std::string_view> texts, std::uint8_t version) {
  const bool allFit =
      std::ranges::all_of(texts, [](std::string_view text) { return Strings::toLatin1(text).has_value(); });
  if (allFit) return TextEncoding::latin1;
  return version == 4 ? TextEncoding::UTF8 : TextEncoding::UTF16;
}

namespace {

/// Appends a text in an encoding with one-byte terminators.
void appendNarrow(Bytes& bytes, TextEncoding encoding, std::string_view text) {
  if (encoding == TextEncoding::latin1) return platform::append(bytes, Strings::toLatin1(text).value());
  platform::append(bytes, platform::bytesOf(text));
}

}  // namespace

void appendLastText(Bytes& bytes, TextEncoding encoding, std::string_view text) {
  if (text.empty()) {
    appendTerminated(bytes, encoding, text);
  } else if (isWide(encoding)) {
    appendWideValues(bytes, text);
  } else {
    appendNarrow(bytes, encoding, text);
  }
}

void appendTerminated(Bytes& bytes, TextEncoding encoding, std::string_view text) {
  if (isWide(encoding)) {
    appendWideValues(bytes, text);
    bytes.insert(bytes.end(), {0, 0});
  } else {
    appendNarrow(bytes, encoding, text);
    bytes.push_back(0);
  }
}

}  // namespace ID3v2
