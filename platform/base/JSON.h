#pragma once

#include <concepts>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/base/Bytes.h"

/// JSON documents (RFC 8259).
namespace platform::JSON {

class Value;

/// The members in ascending order of their names' bytes.
using Object = std::map<std::string, Value, std::less<>>;
using Array = std::vector<Value>;

/// A number as it was written, so that none loses digits before somebody asks what it is.
struct Number {
  std::string text;

  /// The value when it is integral and fits in 64 bits, however it is written: 1977, 1977.0, 1.977e3.
  std::optional<std::int64_t> integer() const;
};

/// Bytes that are printed as one text, in base64.
struct Base64Text {
  SharedBytes bytes;
};

/// One JSON value; null by default.
class Value {
 public:
  Value() = default;
  // Only a bool: whatever else turns into one, such as the address of a text, is a mistake.
  template <std::same_as<bool> Bool>
  Value(Bool value) : value_(value) {}
  Value(std::int64_t value) : value_(Number{std::to_string(value)}) {}
  Value(Number value) : value_(std::move(value)) {}
  Value(std::string value) : value_(std::move(value)) {}
  Value(Object value) : value_(std::move(value)) {}
  Value(Array value) : value_(std::move(value)) {}
  Value(Base64Text value) : value_(std::move(value)) {}

  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  /// The value as the given kind; null when it is of another one.
  const std::string* string() const { return std::get_if<std::string>(&value_); }
  const Number* number() const { return std::get_if<Number>(&value_); }
  const Object* object() const { return std::get_if<Object>(&value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Base64Text* base64Text() const { return std::get_if<Base64Text>(&value_); }
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  Object* object() { return std::get_if<Object>(&value_); }
  Array* array() { return std::get_if<Array>(&value_); }

  /// What the value is, for a message: "a number", "an object".
  std::string_view kind() const;

 private:
  std::variant<std::monostate, bool, Number, std::string, Object, Array, Base64Text> value_;
};

/// A text that is no JSON, or a value that is not what the reader of a document expects; says what and where.
class DecodingError : public std::exception {
 public:
  explicit DecodingError(std::string description) : description_(std::move(description)) {}
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
};

/// What `parse` does about a name that an object contains more than once: the last member of that name
/// counts, or it throws.
enum class RepeatedNames : std::uint8_t { accepted, refused };

/// Reads one document. Throws DecodingError for anything that is not JSON in UTF-8, and for values nested
/// more than 512 deep.
Value parse(std::string_view document, RepeatedNames repeatedNames = RepeatedNames::accepted);

/// Returns a member's place in a document, such as `"title" of "01.mp3"`, from the names of the members that
/// lead to it, the outermost first. Control characters in names are made visible.
std::string placeOf(std::span<const std::string_view> names);

enum class Layout : std::uint8_t {
  /// No white space at all.
  compact,
  /// Each member on its own line, two blanks per level, " : " after a name; an object without members is its
  /// braces with an empty line between them.
  pretty,
};

/// How texts are printed.
enum class Escapes : std::uint8_t {
  /// `"`, `\`, `/` and the controls below U+0020.
  few,
  /// Also the other characters that would command a terminal.
  forTerminal,
};

/// Takes a printed text in pieces.
using Sink = std::function<void(std::string_view)>;

/// Makes base64 texts of bytes.
class Base64Encoder {
 public:
  enum class Keeping : std::uint8_t {
    nothing,
    /// The last text, if other objects share its bytes: an album's cover is encoded once for all tracks.
    sharedText,
  };

  explicit Base64Encoder(Keeping keeping = Keeping::nothing) : keeping_(keeping) {}

  /// Hands the text out in pieces, its slashes escaped.
  void write(const SharedBytes& bytes, const Sink& sink);

 private:
  Keeping keeping_;
  SharedBytes keptBytes_;
  std::string keptText_;
  std::vector<char> piece_;
};

/// A value in print, in which bytes are turned into base64 only when it is handed out: until then they are
/// shared with who else has them.
class Printed {
 public:
  /// `level` is how deep in a document the value stands.
  explicit Printed(const Value& value, Layout layout, Escapes escapes = Escapes::few, std::size_t level = 0);

  /// Hands the text out in pieces, as UTF-8 without a line feed at its end. Values that share bytes can share
  /// the encoder, too.
  void writeTo(const Sink& sink, Base64Encoder& encoder) const;

 private:
  friend class Printer;
  struct Gap {
    std::size_t at;
    SharedBytes bytes;
  };

  std::string text_;
  /// What is missing in the text, in its order.
  std::vector<Gap> gaps_;
};

/// The whole document.
std::string print(const Value& value, Layout layout);

}  // namespace platform::JSON
