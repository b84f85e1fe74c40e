#include "QuillmarkKit/store/standard/TagTexts.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ID3v2/Genres.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::TagTexts {

namespace Strings = platform::Strings;

namespace {

constexpr char separator = '\0';

bool isDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, Strings::isASCIIDigit);
}

/// Returns the genre that a reference in a genre text denotes, or nothing. References are numbers, "RX" and
/// "CR".
std::optional<std::string_view> referredGenre(std::string_view reference) {
  if (reference == "RX") return "Remix";
  if (reference == "CR") return "Cover";
  const auto number = isDigits(reference) ? Strings::decimalInteger(reference) : std::nullopt;
  if (!number || std::cmp_greater_equal(*number, ID3v2::genreNames.size())) return std::nullopt;
  return ID3v2::genreNames[static_cast<std::size_t>(*number)];
}

/// Values found so far. A search in the text itself would take time in proportion to its length.
using KnownValues = std::unordered_set<std::string_view>;

/// Calls the operation with each genre in one value of a genre text.
void forEachGenre(std::string_view value, const std::function<void(std::string_view)>& operation) {
  value = Strings::trimmingWhiteSpace(value);
  if (const auto name = referredGenre(value)) return operation(*name);
  while (value.starts_with('(')) {
    const std::size_t end = value.find(')');
    const auto name = end == std::string_view::npos ? std::nullopt : referredGenre(value.substr(1, end - 1));
    if (!name) break;
    operation(*name);
    value.remove_prefix(end + 1);
  }
  // A genre that starts with a parenthesis is written with a second one.
  if (value.starts_with("((")) value.remove_prefix(1);
  if (!isBlank(value)) operation(value);
}

}  // namespace

bool isBlank(std::string_view text) {
  return Strings::trimmingNulls(Strings::trimmingWhiteSpace(text)).empty();
}

void forEachValue(std::string_view text, const std::function<void(std::string_view)>& operation) {
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t end = std::min(text.find(separator, from), text.size());
    operation(text.substr(from, end - from));
    from = end + 1;
  }
}

void addValue(std::string& text, std::string_view value) {
  if (!text.empty()) text += separator;
  text += value;
}

std::string textOf(const ID3v2::Tag& tag, std::string_view identifier) {
  std::vector<const ID3v2::Text*> frames;
  for (const ID3v2::Frame& frame : tag.frames) {
    const auto* content = frame.identifier == identifier ? std::get_if<ID3v2::Text>(&frame.content) : nullptr;
    if (content != nullptr) frames.push_back(content);
  }
  return joined(frames);
}

std::string joined(const std::vector<const ID3v2::Text*>& frames) {
  std::string values;
  std::string_view first;
  KnownValues known;
  for (const ID3v2::Text* content : frames) {
    if (first.empty()) {
      first = content->text;
      values = first;
      continue;
    }
    if (known.empty()) forEachValue(first, [&](std::string_view value) { known.insert(value); });
    forEachValue(content->text, [&](std::string_view value) {
      if (!isBlank(value) && known.insert(value).second) addValue(values, value);
    });
  }
  return values;
}

std::string firstValue(const ID3v2::Tag& tag, std::string_view identifier) {
  std::string first;
  forEachValue(textOf(tag, identifier), [&](std::string_view value) {
    if (first.empty()) first = Strings::trimmingWhiteSpace(value);
  });
  return first;
}

std::string genresIn(std::string_view text) {
  std::string genres;
  KnownValues known;
  forEachValue(text, [&](std::string_view value) {
    forEachGenre(value, [&](std::string_view genre) {
      if (known.insert(genre).second) addValue(genres, genre);
    });
  });
  return genres;
}

std::string genreText(std::string_view genres) {
  std::string text;
  forEachValue(genres, [&](std::string_view genre) {
    addValue(text, genre.starts_with('(') ? "(" + std::string(genre) : std::string(genre));
  });
  return text;
}

std::optional<std::int64_t> yearIn(std::string_view date) {
  constexpr std::size_t digitsOfAYear = 4;
  // The engine writes a count of seconds since 1970 into v2.4 tags.
  const bool isCountOfSeconds = date.size() == 9 || date.size() == 10;
  if (isCountOfSeconds && isDigits(date)) {
    const std::chrono::sys_seconds moment(std::chrono::seconds(*Strings::decimalInteger(date)));
    return static_cast<int>(
        std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(moment)).year());
  }
  std::size_t digits = 0;
  for (std::size_t i = 0; i < date.size(); ++i) {
    digits = Strings::isASCIIDigit(date[i]) ? digits + 1 : 0;
    if (digits == digitsOfAYear) return Strings::decimalInteger(date.substr(i + 1 - digits, digits));
  }
  return std::nullopt;
}

std::string yearText(std::int64_t year) {
  std::string text = std::to_string(year);
  if (year >= 0 && text.size() < 4) text.insert(0, 4 - text.size(), '0');
  return text;
}

Position positionIn(std::string_view text) {
  const std::size_t slash = std::min(text.find('/'), text.size());
  const std::string_view total = text.substr(slash == text.size() ? slash : slash + 1);
  return {.number = std::string(Strings::trimmingWhiteSpace(text.substr(0, slash))),
          .total = std::string(Strings::trimmingWhiteSpace(total))};
}

std::string dateIn(const ID3v2::Tag& tag) {
  const auto valueOf = [&](std::string_view identifier) { return firstValue(tag, identifier); };
  if (std::string date = valueOf("TDRC"); !date.empty()) return date;
  std::string date = valueOf("TYER");
  const std::string day = valueOf("TDAT");
  const std::string time = valueOf("TIME");
  if (day.size() == 4) date.append("-").append(day, 2).append("-").append(day, 0, 2);
  if (time.size() == 4) date.append("T").append(time, 0, 2).append(":").append(time, 2);
  return date;
}

}  // namespace QuillmarkKit::TagTexts

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
