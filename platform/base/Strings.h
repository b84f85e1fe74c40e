#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Bytes.h"

/// Text is a std::string with valid UTF-8. Bytes are converted to text here, and only here.
namespace platform::Strings {

/// Returns the text in which each byte is the character of the same number.
std::string fromLatin1(ByteView bytes);
/// Returns the text of the UTF-16 units. A byte-order mark at the start determines their byte order and is
/// not part of the text; without one, they are little-endian. An odd last byte is dropped. Returns nothing if
/// a surrogate is unpaired.
std::optional<std::string> fromUTF16(ByteView bytes);
/// Returns the bytes as text, or nothing if any sequence is invalid.
std::optional<std::string> fromUTF8(ByteView bytes);
/// Returns the bytes as text, with U+FFFD for invalid sequences.
std::string fromUTF8Lossily(std::string_view bytes);

bool isValidUTF8(std::string_view bytes);

// These two return nothing for invalid UTF-8, because a caller's text may not have been checked.

/// Returns nothing if a character is not in ISO-8859-1.
std::optional<Bytes> toLatin1(std::string_view text);
/// Returns FF FE, then little-endian units.
std::optional<Bytes> toUTF16WithMark(std::string_view text);

// The three functions that trim return bytes that are not valid UTF-8 unchanged.

/// Returns the text without the characters of the Unicode property White_Space at both ends.
std::string_view trimmingWhiteSpace(std::string_view text);
/// Returns the text without the tabs and the space separators (category Zs) at both ends. Keeps line breaks.
std::string_view trimmingBlanks(std::string_view text);
/// Returns the text without the U+0000 characters at both ends.
std::string_view trimmingNulls(std::string_view text);

/// Removes all of `text` but `part`, which must be a part of it. Does not copy a long text.
void trim(std::string& text, std::string_view part);

/// One character decoded from the front of a text.
struct Character {
  char32_t value;
  /// The character's length in UTF-8, in bytes.
  std::size_t length;
};
/// Returns the first character of a text, which must not be empty.
Character firstCharacter(std::string_view text);
std::size_t characterCount(std::string_view text);

/// Returns whether a terminal does something other than show the character: true for the controls, and for
/// the marks, embeddings, overrides and isolates of the bidirectional algorithm.
bool commandsTerminal(char32_t character);
/// Appends a backslash, the letter, and the value as `digitCount` hexadecimal digits.
void appendEscape(std::string& text, char letter, char32_t value, int digitCount);
/// Returns the bytes in a form that does not control a terminal: a control as "\x1b" or "\u009b", a character
/// that changes the direction of writing as "\u202e", and an invalid byte as "\xff". All other characters are
/// unchanged.
std::string visible(std::string_view bytes);
/// Returns the number of columns in which a terminal shows the text.
std::size_t columnsOf(std::string_view text);
/// Returns the longest start of the text that a terminal shows in at most `columns` columns.
std::string_view fitting(std::string_view text, std::size_t columns);

/// Returns whether the character is a letter, a mark, a decimal digit or a connector punctuation such as the
/// underscore.
bool isWordCharacter(char32_t character);

/// Convert a letter from a to z or from A to Z; all other characters are unchanged.
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

/// Returns the pieces between the separators. Leaves out empty pieces.
std::vector<std::string_view> split(std::string_view text, char separator);

/// Returns the number, or nothing if the text is anything but an optional "+" or "-" and one or more digits 0
/// to 9, or if the number does not fit in 64 bits.
std::optional<std::int64_t> decimalInteger(std::string_view text);

/// Returns the value of a decimal or hexadecimal floating-point literal, or of a word for infinity or
/// not-a-number. Returns nothing for any other text, or if a double cannot hold the number. Does not depend
/// on the locale.
std::optional<double> floatingPoint(std::string_view text);

}  // namespace platform::Strings
