#include "platform/base/Strings.h"

#include <utf8.h>
#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <iterator>
#include <memory>

#ifndef __cpp_lib_to_chars
#include <locale.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif
#endif

namespace platform::Strings {

namespace {

void appendCharacter(std::string& text, char32_t character) {
  if (character < 0x80) {
    text.push_back(static_cast<char>(character));
  } else {
    utf8::unchecked::append(character, std::back_inserter(text));
  }
}

bool isBlank(char32_t character) {
  return character == '\t' ||
         utf8proc_category(static_cast<utf8proc_int32_t>(character)) == UTF8PROC_CATEGORY_ZS;
}

// White_Space is no category of its own: it consists of the separators and these controls.
bool isWhiteSpace(char32_t character) {
  if ((character >= 0x09 && character <= 0x0D) || character == 0x85) return true;
  const auto category = utf8proc_category(static_cast<utf8proc_int32_t>(character));
  return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
         category == UTF8PROC_CATEGORY_ZP;
}

template <class Predicate>
std::string_view trimming(std::string_view text, Predicate isTrimmed) {
  // Words of the command line may not be valid UTF-8.
  if (!isValidUTF8(text)) return text;
  while (!text.empty()) {
    const Character first = firstCharacter(text);
    if (!isTrimmed(first.value)) break;
    text.remove_prefix(first.length);
  }
  while (!text.empty()) {
    auto last = text.end();
    if (!isTrimmed(utf8::unchecked::prior(last))) break;
    text.remove_suffix(static_cast<std::size_t>(text.end() - last));
  }
  return text;
}

/// Returns whether a hexadecimal literal can start with this character after its prefix. Unlike a decimal
/// one, it cannot be a word for infinity or not-a-number.
bool isHexadecimalStart(char c) {
  return c == '.' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Reads a literal without sign or prefix, which must not start with blanks. The decimal point is a full
/// stop, whatever the locale. Returns nothing if a double cannot hold the number.
std::optional<double> unsignedFloatingPoint(std::string_view text, bool isHexadecimal) {
  double value = 0;
#ifdef __cpp_lib_to_chars
  const auto format = isHexadecimal ? std::chars_format::hex : std::chars_format::general;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value, format);
  if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
#else
  // This C++ library has no from_chars for double. The C library's function is the only one that also reads
  // hexadecimal literals.
  if (std::isspace(static_cast<unsigned char>(text.front())) != 0 || text.front() == '+') return std::nullopt;
  const std::string literal = (isHexadecimal ? "0x" : "") + std::string(text);
  static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  char* end = nullptr;
  errno = 0;
  value = ::strtod_l(literal.c_str(), &end, plain);
  if (end != literal.c_str() + literal.size()) return std::nullopt;
  // ERANGE is also reported for a number next to zero that a double can hold with fewer digits.
  if (errno == ERANGE && (value == 0 || std::isinf(value))) return std::nullopt;
#endif
  return value;
}

/// Returns the number of columns that a terminal needs for the character: two for a wide one, none for one
/// that it combines with the previous one.
std::size_t columnsOf(char32_t character) {
  return static_cast<std::size_t>(std::max(utf8proc_charwidth(static_cast<utf8proc_int32_t>(character)), 0));
}

bool isHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

std::string fromLatin1(ByteView bytes) {
  std::string text;
  const auto isLong = [](std::uint8_t byte) { return byte >= 0x80; };
  text.reserve(bytes.size() + static_cast<std::size_t>(std::ranges::count_if(bytes, isLong)));
  for (const std::uint8_t byte : bytes) appendCharacter(text, byte);
  return text;
}

std::optional<std::string> fromUTF16(ByteView bytes) {
  bool bigEndian = false;
  if (bytes.size() >= 2) {
    const bool bigEndianMark = bytes[0] == 0xFE && bytes[1] == 0xFF;
    const bool littleEndianMark = bytes[0] == 0xFF && bytes[1] == 0xFE;
    bigEndian = bigEndianMark;
    if (bigEndianMark || littleEndianMark) bytes = bytes.subspan(2);
  }
  const auto unitAt = [&](std::size_t index) -> char32_t {
    const char32_t first = bytes[2 * index];
    const char32_t second = bytes[2 * index + 1];
    return bigEndian ? first << 8 | second : second << 8 | first;
  };
  const std::size_t units = bytes.size() / 2;
  std::string text;
  text.reserve(units);
  for (std::size_t i = 0; i < units; ++i) {
    char32_t character = unitAt(i);
    if (isLowSurrogate(character)) return std::nullopt;
    if (isHighSurrogate(character)) {
      if (++i == units || !isLowSurrogate(unitAt(i))) return std::nullopt;
      character = 0x10000 + ((character - 0xD800) << 10) + (unitAt(i) - 0xDC00);
    }
    appendCharacter(text, character);
  }
  return text;
}

std::optional<std::string> fromUTF8(ByteView bytes) {
  const std::string_view text = charactersOf(bytes);
  if (!isValidUTF8(text)) return std::nullopt;
  return std::string(text);
}

std::string fromUTF8Lossily(std::string_view bytes) {
  std::string text;
  utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(text), 0xFFFD);
  return text;
}

bool isValidUTF8(std::string_view bytes) {
  return utf8::is_valid(bytes.begin(), bytes.end());
}

std::optional<Bytes> toLatin1(std::string_view text) {
  if (!isValidUTF8(text)) return std::nullopt;
  Bytes bytes;
  bytes.reserve(text.size());
  for (auto at = text.begin(); at != text.end();) {
    const char32_t character = utf8::unchecked::next(at);
    if (character > 0xFF) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(character));
  }
  return bytes;
}

std::optional<Bytes> toUTF16WithMark(std::string_view text) {
  if (!isValidUTF8(text)) return std::nullopt;
  Bytes bytes;
  bytes.reserve(2 + 2 * text.size());
  const auto appendUnit = [&](char32_t unit) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  };
  appendUnit(0xFEFF);
  for (auto at = text.begin(); at != text.end();) {
    const char32_t character = utf8::unchecked::next(at);
    if (character < 0x10000) {
      appendUnit(character);
    } else {
      appendUnit(0xD800 + ((character - 0x10000) >> 10));
      appendUnit(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
  }
  return bytes;
}

std::string_view trimmingWhiteSpace(std::string_view text) {
  return trimming(text, isWhiteSpace);
}

std::string_view trimmingBlanks(std::string_view text) {
  return trimming(text, isBlank);
}

std::string_view trimmingNulls(std::string_view text) {
  return trimming(text, [](char32_t character) { return character == 0; });
}

void trim(std::string& text, std::string_view part) {
  const auto start = static_cast<std::size_t>(part.data() - text.data());
  text.erase(start + part.size());
  text.erase(0, start);
}

Character firstCharacter(std::string_view text) {
  auto at = text.begin();
  const char32_t value = utf8::unchecked::next(at);
  return {value, static_cast<std::size_t>(at - text.begin())};
}

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(utf8::unchecked::distance(text.begin(), text.end()));
}

bool commandsTerminal(char32_t character) {
  struct Range {
    char32_t first;
    char32_t last;
  };
  static constexpr auto ranges = std::to_array<Range>(
      {{0, 0x1F}, {0x7F, 0x9F}, {0x61C, 0x61C}, {0x200E, 0x200F}, {0x202A, 0x202E}, {0x2066, 0x2069}});
  return std::ranges::any_of(
      ranges, [&](const Range& range) { return range.first <= character && character <= range.last; });
}

void appendEscape(std::string& text, char letter, char32_t value, int digitCount) {
  text.append({'\\', letter});
  while (digitCount-- > 0) text += "0123456789abcdef"[value >> (4 * digitCount) & 0xF];
}

std::string visible(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const auto valid =
        static_cast<std::size_t>(utf8::find_invalid(bytes.begin(), bytes.end()) - bytes.begin());
    for (std::string_view rest = bytes.substr(0, valid); !rest.empty();) {
      const Character character = firstCharacter(rest);
      if (!commandsTerminal(character.value)) {
        text += rest.substr(0, character.length);
      } else if (character.value < 0x80) {
        appendEscape(text, 'x', character.value, 2);
      } else {
        appendEscape(text, 'u', character.value, 4);
      }
      rest.remove_prefix(character.length);
    }
    bytes.remove_prefix(valid);
    if (bytes.empty()) break;
    appendEscape(text, 'x', static_cast<unsigned char>(bytes.front()), 2);
    bytes.remove_prefix(1);
  }
  return text;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    columns += columnsOf(character.value);
    text.remove_prefix(character.length);
  }
  return columns;
}

std::string_view fitting(std::string_view text, std::size_t columns) {
  std::string_view rest = text;
  while (!rest.empty()) {
    const Character character = firstCharacter(rest);
    const std::size_t needed = columnsOf(character.value);
    if (needed > columns) break;
    columns -= needed;
    rest.remove_prefix(character.length);
  }
  return text.substr(0, text.size() - rest.size());
}

bool isWordCharacter(char32_t character) {
  switch (utf8proc_category(static_cast<utf8proc_int32_t>(character))) {
    case UTF8PROC_CATEGORY_LU:
    case UTF8PROC_CATEGORY_LL:
    case UTF8PROC_CATEGORY_LT:
    case UTF8PROC_CATEGORY_LM:
    case UTF8PROC_CATEGORY_LO:
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_MC:
    case UTF8PROC_CATEGORY_ME:
    case UTF8PROC_CATEGORY_ND:
    case UTF8PROC_CATEGORY_PC:
      return true;
    default:
      return false;
  }
}

bool equalIgnoringASCIICase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, toASCIILower, toASCIILower);
}

bool equalIgnoringCaseAndForm(const std::string& a, const std::string& b) {
  const auto folded = [](const std::string& text) {
    constexpr auto options = static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD);
    utf8proc_uint8_t* characters = nullptr;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto length = utf8proc_map(bytes, static_cast<utf8proc_ssize_t>(text.size()), &characters, options);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(characters, &std::free);
    return length < 0 ? text : std::string(characters, characters + length);
  };
  return a == b || folded(a) == folded(b);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(separator), text.size());
    if (end > 0) pieces.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return pieces;
}

std::optional<std::int64_t> decimalInteger(std::string_view text) {
  // from_chars accepts a minus sign but no plus sign.
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<double> floatingPoint(std::string_view text) {
  // from_chars accepts neither the plus sign nor the prefix of hexadecimal literals.
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (isHexadecimal) text.remove_prefix(2);
  const auto startsOutOfPlace = [&](char c) { return c == '-' || (isHexadecimal && !isHexadecimalStart(c)); };
  if (text.empty() || startsOutOfPlace(text.front())) return std::nullopt;
  // The library would accept two signs in a hexadecimal exponent.
  if (text.find("+-") != std::string_view::npos) return std::nullopt;
  const auto value = unsignedFloatingPoint(text, isHexadecimal);
  return value && isNegative ? -*value : value;
}

}  // namespace platform::Strings
