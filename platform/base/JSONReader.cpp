#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/JSON.h"
#include "platform/base/Strings.h"

namespace platform::JSON {

namespace {

constexpr std::size_t greatestDepth = 512;

// Only the library's lexer is used: its parser refuses a document with a number beyond the range of a double,
// and does not return what it expected. The lexer returns the text of such a number.
using nlohmann::detail::input_adapter;
using Lexer = nlohmann::detail::lexer<nlohmann::json, decltype(input_adapter("", ""))>;
using Token = Lexer::token_type;

/// Reads one document. Uses a stack of its own instead of recursion.
class Reader {
 public:
  Reader(std::string_view document, RepeatedNames repeatedNames)
      : document_(document),
        repeatedNames_(repeatedNames),
        lexer_(input_adapter(document.data(), document.data() + document.size())) {}

  Value read() {
    next();
    for (;;) {
      std::optional<Value> value = valueAtToken();
      // Closes each container whose last value this is.
      while (value) {
        next();
        if (open_.empty()) {
          require(Token::end_of_input, "the end");
          return std::move(*value);
        }
        value = add(std::move(*value));
      }
    }
  }

 private:
  struct Container {
    Value value;
    /// The name of the member that is being read, if the value is an object.
    std::string name;
  };

  void next() { token_ = lexer_.scan(); }

  void require(Token token, std::string_view expected) {
    if (token_ != token) fail(expected);
  }

  /// Throws DecodingError for the last byte that the lexer has read.
  [[noreturn]] void fail(std::string_view expected) const {
    const std::size_t end = lexer_.get_position().chars_read_total;
    if (end > document_.size()) throw DecodingError("not valid JSON: it ends too early");
    const std::string_view read = document_.substr(0, end);
    const std::size_t lineStart = read.rfind('\n') + 1;
    throw DecodingError("not valid JSON: " + std::string(expected) + " was expected at line " +
                        std::to_string(1 + std::ranges::count(read, '\n')) + ", column " +
                        std::to_string(end - lineStart));
  }

  /// Returns the value that the token is or starts. Returns nothing if it starts a container with values; the
  /// token is then that of its first value.
  std::optional<Value> valueAtToken() {
    switch (token_) {
      case Token::literal_null:
        return Value();
      case Token::literal_true:
      case Token::literal_false:
        return Value(token_ == Token::literal_true);
      case Token::value_string:
        return Value(std::move(lexer_.get_string()));
      case Token::value_integer:
        return Value(lexer_.get_number_integer());
      case Token::value_unsigned:
      case Token::value_float:
        return Value(Number{lexer_.get_string()});
      case Token::begin_array:
        return open(Value(Array()), Token::end_array);
      case Token::begin_object:
        return open(Value(Object()), Token::end_object);
      default:
        fail("a value");
    }
  }

  std::optional<Value> open(Value container, Token end) {
    if (open_.size() == greatestDepth) {
      throw DecodingError("values nested more than " + std::to_string(greatestDepth) + " deep");
    }
    next();
    if (token_ == end) return container;
    open_.push_back({std::move(container), ""});
    if (end == Token::end_object) readName();
    return std::nullopt;
  }

  /// Adds the value to the container that is open. If the token closes that, returns the container.
  std::optional<Value> add(Value value) {
    auto& [container, name] = open_.back();
    Object* object = container.object();
    if (object != nullptr) {
      object->insert_or_assign(std::move(name), std::move(value));
    } else {
      container.array()->push_back(std::move(value));
    }
    if (token_ == Token::value_separator) {
      next();
      if (object != nullptr) readName();
      return std::nullopt;
    }
    if (object != nullptr) {
      require(Token::end_object, "a comma or a closing brace");
    } else {
      require(Token::end_array, "a comma or a closing bracket");
    }
    Value closed = std::move(container);
    open_.pop_back();
    return closed;
  }

  /// Reads a member's name and colon. The token is then that of its value.
  void readName() {
    require(Token::value_string, "a name in quotes");
    Container& object = open_.back();
    object.name = std::move(lexer_.get_string());
    if (repeatedNames_ == RepeatedNames::refused && object.value.object()->contains(object.name)) {
      throw DecodingError(place() + " is there twice");
    }
    next();
    require(Token::name_separator, "a colon");
    next();
  }

  /// Returns the place of the member that is being read.
  std::string place() const {
    std::vector<std::string_view> names;
    for (const auto& [container, name] : open_) {
      if (container.object() != nullptr) names.emplace_back(name);
    }
    return placeOf(names);
  }

  std::string_view document_;
  RepeatedNames repeatedNames_;
  Lexer lexer_;
  Token token_ = Token::uninitialized;
  std::vector<Container> open_;
};

}  // namespace

Value parse(std::string_view document, RepeatedNames repeatedNames) {
  // The lexer would take a zero byte for the end of the document, whatever follows it.
  if (document.find('\0') != std::string_view::npos)
    throw DecodingError("not valid JSON: it holds a zero byte");
  return Reader(document, repeatedNames).read();
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
