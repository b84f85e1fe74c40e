#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/base/Bytes.h"

/// JSON documents (RFC 8259).
namespace platform::JSON {

class Value;

/// Members in ascending order of the bytes of their names.
using Object = std::map<std::string, Value, std::less<>>;
using Array = std::vector<Value>;

/// A number as it is written in the document, so that no digits are lost before its type is known.
struct Number {
  std::string text;

  /// Returns the value if it is integral and fits in 64 bits, in any notation: 1977, 1977.0, 1.977e3. Returns
  /// nothing otherwise.
  std::optional<std::int64_t> integer() const;
};

/// Bytes that are printed as a string, in Base64.
struct Base64Text {
  SharedBytes bytes;
};

/// One JSON value; null by default.
class Value {
 public:
  Value() = default;
  // Accepts only a bool: anything else that converts to one, such as a pointer, is a mistake.
  template <std::same_as<bool> Bool>
  Value(Bool value) : value_(value) {}
  Value(std::int64_t value) : value_(Number{std::to_string(value)}) {}
  Value(Number value) : value_(std::move(value)) {}
  Value(std::string value) : value_(std::move(value)) {}
  Value(Object value) : value_(std::move(value)) {}
  Value(Array value) : value_(std::move(value)) {}
  Value(Base64Text value) : value_(std::move(value)) {}

  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  /// Return the value as the given kind, or null if it is of another kind.
  const std::string* string() const { return std::get_if<std::string>(&value_); }
  const Number* number() const { return std::get_if<Number>(&value_); }
  const Object* object() const { return std::get_if<Object>(&value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Base64Text* base64Text() const { return std::get_if<Base64Text>(&value_); }
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  Object* object() { return std::get_if<Object>(&value_); }
  Array* array() { return std::get_if<Array>(&value_); }

  /// Returns the kind of the value for a message: "a number", "an object".
  std::string_view kind() const;

 private:
  std::variant<std::monostate, bool, Number, std::string, Object, Array, Base64Text> value_;
};

/// Thrown if a text is not JSON, or if a value is not what the reader of a document expects. The description
/// contains the reason and the place.
class DecodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Determines what `parse` does if an object contains a name more than once: uses the last member of that
/// name, or throws.
enum class RepeatedNames : std::uint8_t { accepted, refused };

/// Reads one document. Throws DecodingError if it is not JSON in UTF-8, or if values are nested more than 512
/// deep.
Value parse(std::string_view document, RepeatedNames repeatedNames = RepeatedNames::accepted);

/// Returns a member's place in a document, such as `"title" of "01.mp3"`. `names` are the names of the
/// members that lead to it, the outermost first. Control characters in names are made visible.
std::string placeOf(std::span<const std::string_view> names);

enum class Layout : std::uint8_t {
  /// No white space.
  compact,
  /// Each member on its own line, two blanks per level, " : " after a name. An empty object or array is its
  /// brackets with an empty line between them.
  pretty,
};

/// The characters that are escaped in strings.
enum class Escapes : std::uint8_t {
  /// `"`, `\`, `/` and the controls below U+0020.
  few,
  /// Also the other characters that control a terminal.
  forTerminal,
};

/// Receives a printed text in pieces.
using Sink = std::function<void(std::string_view)>;

/// Encodes bytes in Base64.
class Base64Encoder {
 public:
  enum class Keeping : std::uint8_t {
    nothing,
    /// The last text, if other objects share its bytes: an album's cover is encoded once for all tracks.
    sharedText,
  };

  explicit Base64Encoder(Keeping keeping = Keeping::nothing) : keeping_(keeping) {}

  /// Passes the text to the sink in pieces, its slashes escaped.
  void write(const SharedBytes& bytes, const Sink& sink);

 private:
  Keeping keeping_;
  SharedBytes keptBytes_;
  std::string keptText_;
  std::vector<char> piece_;
};

/// A printed value. Its bytes are encoded in Base64 only by `writeTo`; until then, they are shared with other
/// objects.
class Printed {
 public:
  /// `level` is the depth of the value in its document.
  explicit Printed(const Value& value, Layout layout, Escapes escapes = Escapes::few, std::size_t level = 0);

  /// Passes the text to the sink in pieces, as UTF-8 without a line feed at its end. Values that share bytes
  /// can share the encoder, too.
  void writeTo(const Sink& sink, Base64Encoder& encoder) const;

 private:
  friend class Printer;
  struct Gap {
    std::size_t at;
    SharedBytes bytes;
  };

  std::string text_;
  /// The bytes that are missing in the text, in order.
  std::vector<Gap> gaps_;
};

/// Returns the whole document.
std::string print(const Value& value, Layout layout);

}  // namespace platform::JSON
