#include "QuillmarkKit/store/standard/PlainValues.h"

#include <set>
#include <utility>
#include <vector>

#include "QuillmarkKit/store/standard/TagTexts.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::PlainValues {

namespace {

/// Returns a number without leading zeros, and any other text unchanged.
std::string plainNumber(std::string_view text) {
  const auto number = platform::Strings::decimalInteger(text);
  return number ? std::to_string(*number) : std::string(text);
}

/// Returns the genre in a form that is equal for "R&B" and "R And B", and for "Hip-Hop" and "Hip Hop".
std::string squashed(std::string_view genre) {
  std::string letters;
  for (const char c : genre) {
    if (c == '&') {
      letters += "and";
    } else if (c != ' ' && c != '-') {
      letters += platform::Strings::toASCIILower(c);
    }
  }
  return letters;
}

/// Returns the value of a text frame in the form that is the same for all its spellings.
std::string plainValue(std::string_view identifier, std::string_view value) {
  value = platform::Strings::trimmingBlanks(value);
  // Keep a value that is only a line break, because it may be a part of another value.
  const std::string_view trimmed = platform::Strings::trimmingWhiteSpace(value);
  if (!trimmed.empty()) value = trimmed;
  if (identifier == "TCON") return squashed(value);
  if (identifier == "TBPM") return plainNumber(value);
  if (identifier != "TRCK" && identifier != "TPOS") return std::string(value);
  TagTexts::Position position = TagTexts::positionIn(value);
  position.number = plainNumber(position.number);
  position.total = plainNumber(position.total);
  if (position.total == "0") position.total.clear();
  return position.text();
}

/// Returns the values in their order, each once.
std::vector<std::string> valuesOf(std::string_view identifier, std::string_view text) {
  constexpr std::string_view blanks("\0\t\n\r ", 5);
  text = text.substr(0, text.find_last_not_of(blanks) + 1);
  std::vector<std::string> values;
  std::set<std::string> known{""};
  TagTexts::forEachValue(identifier == "TCON" ? TagTexts::genresIn(text) : std::string(text),
                         [&](std::string_view value) {
                           std::string plain = plainValue(identifier, value);
                           if (known.insert(plain).second) values.push_back(std::move(plain));
                         });
  return values;
}

}  // namespace

std::string plainText(std::string_view identifier, std::string_view text) {
  std::string plain;
  for (const std::string& value : valuesOf(identifier, text)) TagTexts::addValue(plain, value);
  return plain;
}

std::string plainLanguage(std::string_view language) {
  std::string plain;
  for (const char c : language) {
    const char lower = platform::Strings::toASCIILower(c);
    if (lower >= 'a' && lower <= 'z') plain += lower;
  }
  // The codes for an unknown language in ID3v2.4.0 (structure §4) and in ISO 639-2.
  return plain == "xxx" || plain == "und" ? "" : plain;
}

bool haveSameValues(std::string_view identifier, std::string_view before, std::string_view after) {
  return before == after || valuesOf(identifier, before) == valuesOf(identifier, after);
}

}  // namespace QuillmarkKit::PlainValues
