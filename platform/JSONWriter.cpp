#include <array>

#include "platform/JSON.h"

namespace platform::JSON {

namespace {

struct Escape {
  char character;
  char letter;
};
constexpr std::array<Escape, 8> shortEscapes{
    {{'"', '"'}, {'\\', '\\'}, {'/', '/'}, {'\b', 'b'}, {'\f', 'f'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}}};

/// What to write behind a backslash for each byte: 0 where the byte stands for itself, 'u' for the long form.
constexpr std::array<char, 256> escapes = [] {
  std::array<char, 256> table{};
  for (std::size_t control = 0; control < 0x20; ++control) table[control] = 'u';
  for (const Escape& escape : shortEscapes)
    table[static_cast<unsigned char>(escape.character)] = escape.letter;
  return table;
}();

class Printer {
 public:
  explicit Printer(Layout layout) : pretty_(layout == Layout::pretty) {}

  void print(const Value& value) {
    if (const std::string* string = value.string()) {
      printString(*string);
    } else if (const Number* number = value.number()) {
      text_ += number->text;
    } else if (const Object* object = value.object()) {
      printContainer('{', *object, '}', [this](const auto& member) {
        printString(member.first);
        text_ += pretty_ ? " : " : ":";
        print(member.second);
      });
    } else if (const Array* array = value.array()) {
      printContainer('[', *array, ']', [this](const Value& element) { print(element); });
    } else if (const bool* boolean = value.boolean()) {
      text_ += *boolean ? "true" : "false";
    } else {
      text_ += "null";
    }
  }

  std::string take() { return std::move(text_); }

 private:
  template <class Container, class PrintItem>
  void printContainer(char open, const Container& items, char close, PrintItem printItem) {
    text_ += open;
    ++level_;
    bool first = true;
    for (const auto& item : items) {
      if (!first) text_ += ',';
      first = false;
      startLine();
      printItem(item);
    }
    --level_;
    if (items.empty() && pretty_) text_ += '\n';
    startLine();
    text_ += close;
  }

  void startLine() {
    if (pretty_) text_.append("\n").append(2 * level_, ' ');
  }

  void printString(std::string_view string) {
    text_ += '"';
    for (const char character : string) {
      const char letter = escapes[static_cast<unsigned char>(character)];
      if (letter != 0) text_.append({'\\', letter});
      if (letter == 0) text_ += character;
      if (letter == 'u') {
        constexpr std::string_view digits = "0123456789abcdef";
        text_.append({'0', '0', digits[static_cast<unsigned char>(character) >> 4], digits[character & 0xF]});
      }
    }
    text_ += '"';
  }

  bool pretty_;
  std::size_t level_ = 0;
  std::string text_;
};

}  // namespace

std::string_view Value::kind() const {
  static constexpr std::array<std::string_view, 6> kinds{"null",   "true or false", "a number",
                                                         "a text", "an object",     "an array"};
  static_assert(kinds.size() == std::variant_size_v<decltype(value_)>);
  return kinds[value_.index()];
}

std::string print(const Value& value, Layout layout) {
  Printer printer(layout);
  printer.print(value);
  return printer.take();
}

}  // namespace platform::JSON
