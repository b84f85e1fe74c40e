#include <array>
#include <nlohmann/json.hpp>

#include "platform/base/JSON.h"
#include "platform/base/Strings.h"

namespace platform::JSON {

namespace {

constexpr std::size_t greatestDepth = 512;

/// What should have stood where the parser failed, by what it says it was parsing there.
std::string_view expectedWhere(std::string_view error) {
  using Row = std::pair<std::string_view, std::string_view>;
  static constexpr std::array rows = std::to_array<Row>({
      {"expected end of input", "the end"},
      {"while parsing value -", "a value"},
      {"while parsing object key -", "a name in quotes"},
      {"while parsing object separator -", "a colon"},
      {"while parsing object -", "a comma or a closing brace"},
      {"while parsing array -", "a comma or a closing bracket"},
  });
  for (const auto& [words, expected] : rows) {
    if (error.find(words) != std::string_view::npos) return expected;
  }
  return "something else";
}

/// Builds a Value from the events of the parser, with a stack of its own: no recursion over the document.
class ValueBuilder {
 public:
  Value take() { return std::move(root_); }

  bool null() { return add(Value()); }
  bool boolean(bool value) { return add(Value(value)); }
  bool number_integer(std::int64_t value) { return add(Value(value)); }
  bool number_unsigned(std::uint64_t value) { return add(Value(Number{std::to_string(value)})); }
  bool number_float(double, const std::string& text) { return add(Value(Number{text})); }
  bool string(std::string& value) { return add(Value(std::move(value))); }
  bool binary(std::vector<std::uint8_t>&) { return false; }
  bool key(std::string& name) {
    names_.back() = std::move(name);
    return true;
  }
  bool start_object(std::size_t) { return open(Value(Object())); }
  bool start_array(std::size_t) { return open(Value(Array())); }
  bool end_object() { return close(); }
  bool end_array() { return close(); }

  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) {
    // "[json.exception.parse_error.101] parse error at line 1, column 9: syntax error while parsing value -
    // ...".
    const std::string_view text = error.what();
    const std::size_t place = text.find("at line");
    if (place == std::string_view::npos) throw DecodingError("a number in it is out of range");
    throw DecodingError("not valid JSON: " + std::string(expectedWhere(text)) + " was expected " +
                        std::string(text.substr(place, text.find(':', place) - place)));
  }

 private:
  bool open(Value container) {
    if (open_.size() == greatestDepth) {
      throw DecodingError("values nested more than " + std::to_string(greatestDepth) + " deep");
    }
    open_.push_back(std::move(container));
    names_.emplace_back();
    return true;
  }

  bool close() {
    Value closed = std::move(open_.back());
    open_.pop_back();
    names_.pop_back();
    return add(std::move(closed));
  }

  bool add(Value value) {
    if (open_.empty()) {
      root_ = std::move(value);
    } else if (Object* object = open_.back().object()) {
      object->insert_or_assign(std::move(names_.back()), std::move(value));
    } else {
      open_.back().array()->push_back(std::move(value));
    }
    return true;
  }

  Value root_;
  std::vector<Value> open_;
  /// For each open container the name of the member that is being read.
  std::vector<std::string> names_;
};

}  // namespace

Value parse(std::string_view document) {
  // The parser takes a zero byte for the end of the document, whatever follows it.
  if (document.find('\0') != std::string_view::npos)
    throw DecodingError("not valid JSON: it holds a zero byte");
  ValueBuilder builder;
  nlohmann::json::sax_parse(document.begin(), document.end(), &builder);
  return builder.take();
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
  // The point moves right over the fraction; what zeros remain to be added or taken off, must fit in 64 bits.
  constexpr std::int64_t mostDigits = 20;
  const auto fractionDigits = static_cast<std::int64_t>(fraction.size());
  if (exponent > fractionDigits + mostDigits || exponent < -std::ssize(text)) return std::nullopt;
  std::int64_t zeros = exponent - fractionDigits;
  for (; zeros < 0 && digits.ends_with('0'); ++zeros) digits.pop_back();
  if (zeros < 0) return std::nullopt;
  return Strings::decimalInteger(digits.append(static_cast<std::size_t>(zeros), '0'));
}

}  // namespace platform::JSON
