#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Bytes.h"

/// Text is a std::string that holds valid UTF-8. Bytes become text here, and only here.
namespace platform::Strings {

/// Each byte is the character of the same number.
std::string fromLatin1(ByteView bytes);
/// Follows a leading byte-order mark, which is not part of the text; without one the units are little-endian.
/// An odd last byte is dropped. Nothing for an unpaired surrogate.
std::optional<std::string> fromUTF16(ByteView bytes);
/// Nothing for any invalid sequence.
std::optional<std::string> fromUTF8(ByteView bytes);
/// Invalid sequences become U+FFFD.
std::string fromUTF8Lossily(std::string_view bytes);

bool isValidUTF8(std::string_view bytes);

// A caller's text may not have been checked: these two give nothing for bytes that are no UTF-8.

/// Nothing when a character lies outside ISO-8859-1.
std::optional<Bytes> toLatin1(std::string_view text);
/// FF FE, then little-endian units.
std::optional<Bytes> toUTF16WithMark(std::string_view text);

// The three that trim leave bytes that are no text as they are.

/// Without the characters of the Unicode property White_Space at both ends.
std::string_view trimmingWhiteSpace(std::string_view text);
/// Without the tabs and the space separators (category Zs) at both ends; line breaks stay.
std::string_view trimmingBlanks(std::string_view text);
/// Without the U+0000 characters at both ends.
std::string_view trimmingNulls(std::string_view text);

/// Leaves only `part`, which must be a part of `text`, in its place: a long text is not copied.
void trim(std::string& text, std::string_view part);

/// One character decoded from the front of a text.
struct Character {
  char32_t value;
  /// Its length in UTF-8, in bytes.
  std::size_t length;
};
/// The first character of a text that is not empty.
Character firstCharacter(std::string_view text);
std::size_t characterCount(std::string_view text);

/// Whether a terminal that is sent the character does something other than show it: the controls, and the
/// marks, embeddings, overrides and isolates of the bidirectional algorithm.
bool commandsTerminal(char32_t character);
/// Puts a backslash, the letter and so many hexadecimal digits behind the text.
void appendEscape(std::string& text, char letter, char32_t value, int digitCount);
/// What bytes can be shown as on a terminal without telling it to do anything: a control as "\x1b" or
/// "\u009b", a character that changes the direction of writing as "\u202e", a byte that is no UTF-8 as
/// "\xff". All others are themselves.
std::string visible(std::string_view bytes);
/// Returns the number of columns in which a terminal shows the text.
std::size_t columnsOf(std::string_view text);
/// As much of the front of a text as a terminal shows in so many columns.
std::string_view fitting(std::string_view text, std::size_t columns);

/// A letter, a mark, a decimal digit or a connector punctuation such as the underscore.
bool isWordCharacter(char32_t character);

/// A letter from a to z as the capital, and the other way round; everything else as it is.
constexpr char toASCIIUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char toASCIILower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr bool isASCIIDigit(char c) {
  return c >= '0' && c <= '9';
}
bool equalIgnoringASCIICase(std::string_view a, std::string_view b);
/// Returns whether two texts differ at most in the case of letters and in their Unicode normalisation form.
/// Text that is not UTF-8 only equals itself.
bool equalIgnoringCaseAndForm(const std::string& a, const std::string& b);

/// The pieces between the separators; empty pieces are left out.
std::vector<std::string_view> split(std::string_view text, char separator);

/// An optional "+" or "-", then one or more digits 0 to 9, and nothing else, within 64 bits.
std::optional<std::int64_t> decimalInteger(std::string_view text);

/// A decimal or hexadecimal floating-point literal that a double can hold, or a word for infinity or
/// not-a-number, and nothing else, whatever the locale.
std::optional<double> floatingPoint(std::string_view text);

}  // namespace platform::Strings
