#include <algorithm>
#include <array>

#include "platform/base/Base64.h"
#include "platform/base/JSON.h"
#include "platform/base/Strings.h"

namespace platform::JSON {

namespace {

struct Escape {
  char character;
  char letter;
};
constexpr std::array<Escape, 8> shortEscapes{
    {{'"', '"'}, {'\\', '\\'}, {'/', '/'}, {'\b', 'b'}, {'\f', 'f'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}}};

/// The letter to write after a backslash for each byte: 'u' for the long form, 0 if the byte is written
/// unchanged.
constexpr std::array<char, 256> escapeLetters = [] {
  std::array<char, 256> table{};
  for (std::size_t control = 0; control < 0x20; ++control) table[control] = 'u';
  for (const Escape& escape : shortEscapes)
    table[static_cast<unsigned char>(escape.character)] = escape.letter;
  return table;
}();

}  // namespace

class Printer {
 public:
  Printer(Printed& printed, Layout layout, Escapes escapes, std::size_t level)
      : text_(printed.text_),
        gaps_(printed.gaps_),
        pretty_(layout == Layout::pretty),
        forTerminal_(escapes == Escapes::forTerminal),
        level_(level) {}

  void print(const Value& value) {
    if (const std::string* string = value.string()) {
      printString(*string);
    } else if (const Base64Text* base64 = value.base64Text()) {
      text_ += '"';
      gaps_.push_back({text_.size(), base64->bytes});
      text_ += '"';
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
    while (!string.empty()) {
      const char front = string.front();
      const char letter = escapeLetters[static_cast<unsigned char>(front)];
      std::size_t length = 1;
      if (letter != 0 && letter != 'u') {
        text_.append({'\\', letter});
      } else if (letter == 'u') {
        Strings::appendEscape(text_, 'u', static_cast<unsigned char>(front), 4);
      } else if (const auto character = characterForTerminal(string)) {
        Strings::appendEscape(text_, 'u', character->value, 4);
        length = character->length;
      } else {
        text_ += front;
      }
      string.remove_prefix(length);
    }
    text_ += '"';
  }

  /// Returns the first character if it must not reach the terminal that the text is printed for.
  std::optional<Strings::Character> characterForTerminal(std::string_view string) const {
    // This is called for each byte, so skip the other bytes of longer characters, which are not the start of
    // one.
    const auto front = static_cast<unsigned char>(string.front());
    if (!forTerminal_ || front < 0x7F || (front & 0xC0U) == 0x80) return std::nullopt;
    const Strings::Character character = Strings::firstCharacter(string);
    return Strings::commandsTerminal(character.value) ? std::optional(character) : std::nullopt;
  }

  std::string& text_;
  std::vector<Printed::Gap>& gaps_;
  bool pretty_;
  bool forTerminal_;
  std::size_t level_;
};

Printed::Printed(const Value& value, Layout layout, Escapes escapes, std::size_t level) {
  Printer(*this, layout, escapes, level).print(value);
}

void Base64Encoder::write(const SharedBytes& bytes, const Sink& sink) {
  // The text of a piece fits in the processor's cache and is large enough to be printed at once. The size is
  // a multiple of three bytes, because padding is allowed at the end only.
  constexpr std::size_t pieceSize = 0xC000;
  if (!keptText_.empty() && bytes.isSameAs(keptBytes_)) return sink(keptText_);

  keptText_.clear();
  keptBytes_ = {};
  const bool isKept = keeping_ == Keeping::sharedText && bytes.isShared();
  if (isKept) keptBytes_ = bytes;
  piece_.resize(Base64::mostCharacters(pieceSize));
  for (ByteView rest = bytes; !rest.empty();) {
    const ByteView next = rest.first(std::min(rest.size(), pieceSize));
    const std::string_view text(piece_.data(), Base64::encode(next, piece_));
    if (isKept) keptText_ += text;
    sink(text);
    rest = rest.subspan(next.size());
  }
}

void Printed::writeTo(const Sink& sink, Base64Encoder& encoder) const {
  std::size_t at = 0;
  for (const Gap& gap : gaps_) {
    sink(std::string_view(text_).substr(at, gap.at - at));
    at = gap.at;
    encoder.write(gap.bytes, sink);
  }
  sink(std::string_view(text_).substr(at));
}

std::string_view Value::kind() const {
  static constexpr std::array<std::string_view, 7> kinds{"null",      "true or false", "a number", "a text",
                                                         "an object", "an array",      "a text"};
  static_assert(kinds.size() == std::variant_size_v<decltype(value_)>);
  return kinds[value_.index()];
}

std::string print(const Value& value, Layout layout) {
  std::string text;
  Base64Encoder encoder;
  Printed(value, layout).writeTo([&](std::string_view piece) { text += piece; }, encoder);
  return text;
}

}  // namespace platform::JSON
