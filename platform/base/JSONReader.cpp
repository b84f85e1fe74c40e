#include <cmath>

namespace platform::JSON {

namespace {

/// Takes the value of a floating-point number from the parser. It is always 0, because the parser would
/// refuse a document with a number beyond the range of a double; the builder uses the text of the number.
class UncheckedNumber {
 public:
  UncheckedNumber(double value = 0) : value_(value) {}
  operator double&() { return value_; }
  operator double() const { return 0; }

 private:
  double value_;
};

}  // namespace

}  // namespace platform::JSON

#ifdef _LIBCPP_VERSION
// The parser calls this for every number. Unlike the functions of other libraries, which convert the number
// to a built-in type, that of libc++ accepts only such types.
namespace std {
inline bool isfinite(const platform::JSON::UncheckedNumber& number) {
  return isfinite(static_cast<double>(number));
}
}  // namespace std
#endif

#include <algorithm>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/JSON.h"
#include "platform/base/Strings.h"

namespace platform::JSON {

namespace {

constexpr std::size_t greatestDepth = 512;

using Parser = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t, std::uint64_t,
                                    UncheckedNumber>;

/// Returns the end of the token that starts at `start`.
std::size_t tokenEnd(std::string_view document, std::size_t start) {
  std::size_t end = start + 1;
  if (document[start] == '"') {
    while (end < document.size() && document[end] != '"') end += document[end] == '\\' ? 2 : 1;
    ++end;
  } else if (std::string_view(",:[]{}").find(document[start]) == std::string_view::npos) {
    end = document.find_first_of(" \t\r\n\",:[]{}", end);
  }
  return std::min(end, document.size());
}

/// Returns the first character of the token before the one that contains the byte before `end`, or a zero
/// byte if there is none.
char tokenBefore(std::string_view document, std::size_t end) {
  char before = '\0';
  for (std::size_t at = 0;;) {
    at = document.find_first_not_of(" \t\r\n", at);
    if (at == std::string_view::npos) return before;
    const std::size_t next = tokenEnd(document, at);
    if (next >= end) return before;
    before = document[at];
    at = next;
  }
}

/// Builds a Value from the events of the parser. Uses a stack of its own instead of recursion.
class ValueBuilder {
 public:
  ValueBuilder(std::string_view document, RepeatedNames repeatedNames)
      : document_(document), repeatedNames_(repeatedNames) {}

  Value take() { return std::move(root_); }

  bool null() { return add(Value()); }
  bool boolean(bool value) { return add(Value(value)); }
  bool number_integer(std::int64_t value) { return add(Value(value)); }
  bool number_unsigned(std::uint64_t value) { return add(Value(Number{std::to_string(value)})); }
  bool number_float(UncheckedNumber, const std::string& text) { return add(Value(Number{text})); }
  bool string(std::string& value) { return add(Value(std::move(value))); }
  bool binary(std::vector<std::uint8_t>&) { return false; }
  bool key(std::string& name) {
    const bool isRepeated = open_.back().object()->contains(name);
    names_.back() = std::move(name);
    if (isRepeated && repeatedNames_ == RepeatedNames::refused) {
      throw DecodingError(place() + " is there twice");
    }
    last_ = Event::key;
    return true;
  }
  bool start_object(std::size_t) { return open(Value(Object())); }
  bool start_array(std::size_t) { return open(Value(Array())); }
  bool end_object() { return close(); }
  bool end_array() { return close(); }

  /// `end` is the position after the byte at which the parser failed, beyond the document if more was
  /// expected.
  bool parse_error(std::size_t end, const std::string&, const nlohmann::detail::exception&) {
    if (end > document_.size()) throw DecodingError("not valid JSON: it ends too early");
    const std::string_view read = document_.substr(0, end);
    const std::size_t lineStart = read.rfind('\n') + 1;
    throw DecodingError("not valid JSON: " + std::string(expectedBefore(end)) + " was expected at line " +
                        std::to_string(1 + std::ranges::count(read, '\n')) + ", column " +
                        std::to_string(end - lineStart));
  }

 private:
  enum class Event : std::uint8_t { opened, key, value };

  /// Returns what could have been in the place of the token that the parser failed at.
  std::string_view expectedBefore(std::size_t end) const {
    if (open_.empty()) return last_ == Event::value ? "the end" : "a value";
    const char before = tokenBefore(document_, end);
    if (last_ == Event::key) return before == ':' ? "a value" : "a colon";
    const bool isObject = open_.back().object() != nullptr;
    if (last_ == Event::value && before != ',')
      return isObject ? "a comma or a closing brace" : "a comma or a closing bracket";
    return isObject ? "a name in quotes" : "a value";
  }

  /// Returns the place of the member that is being read.
  std::string place() const {
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < open_.size(); ++i) {
      if (open_[i].object() != nullptr) names.emplace_back(names_[i]);
    }
    return placeOf(names);
  }

  bool open(Value container) {
    if (open_.size() == greatestDepth) {
      throw DecodingError("values nested more than " + std::to_string(greatestDepth) + " deep");
    }
    open_.push_back(std::move(container));
    names_.emplace_back();
    last_ = Event::opened;
    return true;
  }

  bool close() {
    Value closed = std::move(open_.back());
    open_.pop_back();
    names_.pop_back();
    return add(std::move(closed));
  }

  bool add(Value value) {
    last_ = Event::value;
    if (open_.empty()) {
      root_ = std::move(value);
    } else if (Object* object = open_.back().object()) {
      object->insert_or_assign(std::move(names_.back()), std::move(value));
    } else {
      open_.back().array()->push_back(std::move(value));
    }
    return true;
  }

  std::string_view document_;
  RepeatedNames repeatedNames_;
  Event last_ = Event::opened;
  Value root_;
  std::vector<Value> open_;
  /// The name of the member that is being read, for each open container.
  std::vector<std::string> names_;
};

}  // namespace

Value parse(std::string_view document, RepeatedNames repeatedNames) {
  // The parser would take a zero byte for the end of the document, whatever follows it.
  if (document.find('\0') != std::string_view::npos)
    throw DecodingError("not valid JSON: it holds a zero byte");
  ValueBuilder builder(document, repeatedNames);
  Parser::sax_parse(document.begin(), document.end(), &builder);
  return builder.take();
}

std::string placeOf(std::span<const std::string_view> names) {
  std::string place;
  for (const std::string_view name : names) {
    std::string quoted = "\"" + Strings::visible(name) + "\"";
    if (!place.empty()) quoted.append(" of ").append(place);
    place = std::move(quoted);
  }
  return place;
}

std::optional<std::int64_t> Number::integer() const {
  const std::size_t exponentMark = std::min(text.find_first_of("eE"), text.size());
  const std::string_view mantissa = std::string_view(text).substr(0, exponentMark);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  std::string digits(mantissa.substr(0, point));
  std::string fraction(mantissa.substr(std::min(point + 1, mantissa.size())));
  fraction.erase(fraction.find_last_not_of('0') + 1);
  digits += fraction;
  const std::size_t significant = digits.find_first_not_of("-0");
  if (significant == std::string::npos) return 0;

  std::int64_t exponent = 0;
  if (exponentMark < text.size()) {
    const auto written = Strings::decimalInteger(std::string_view(text).substr(exponentMark + 1));
    if (!written) return std::nullopt;
    exponent = *written;
  }
  // The decimal point moves right over the fraction. The number of zeros left to append or remove must be
  // small, because the result must fit in 64 bits.
  constexpr std::int64_t mostDigits = 20;
  const auto fractionDigits = static_cast<std::int64_t>(fraction.size());
  if (exponent > fractionDigits + mostDigits || exponent < -std::ssize(text)) return std::nullopt;
  std::int64_t zeros = exponent - fractionDigits;
  for (; zeros < 0 && digits.ends_with('0'); ++zeros) digits.pop_back();
  if (zeros < 0) return std::nullopt;
  return Strings::decimalInteger(digits.append(static_cast<std::size_t>(zeros), '0'));
}

}  // namespace platform::JSON
