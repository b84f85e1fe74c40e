#include "ID3v2/OpaqueTexts.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "ID3v2/TextFields.h"

namespace ID3v2 {

namespace {

using platform::Bytes;
using platform::ByteView;

/// What follows the encoding byte, one letter for each field: "L" a terminated ISO-8859-1 text, "T" a text
/// with a terminator, "t" texts up to the end, a digit so many bytes, "s" synchronised syllables (a text with
/// a terminator and four bytes, again and again), "d" all the rest.
struct Layout {
  std::string_view identifier;
  std::string_view fields;
};

constexpr auto layouts = std::to_array<Layout>({{"WXXX", "Td"},
                                                {"GEOB", "LTTd"},
                                                {"SYLT", "5Ts"},
                                                {"USER", "3t"},
                                                {"OWNE", "L8t"},
                                                {"COMR", "L8L1TTd"},
                                                {"IPLS", "t"}});

struct TerminatedText {
  std::string text;
};
struct LastTexts {
  std::string texts;
};
using Piece = std::variant<ByteView, TerminatedText, LastTexts>;

/// Takes content apart, field by field.
class Pieces {
 public:
  Pieces(TextDecoder decoder, ByteView content) : decoder_(decoder), rest_(content) {}

  /// Whether the rest starts with such a field.
  bool take(char field) {
    switch (field) {
      case 'L':
        return cutAtZero(rest_).isTerminated && takeRaw(rest_.size() - cutAtZero(rest_).rest.size());
      case 'T':
        return takeText();
      case 't':
        return takeLastTexts();
      case 's':
        while (!rest_.empty()) {
          if (!takeText() || !takeRaw(4)) return false;
        }
        return true;
      case 'd':
        return takeRaw(rest_.size());
      default:
        return takeRaw(static_cast<std::size_t>(field - '0'));
    }
  }

  /// All of it with the texts in an encoding of v2.3.
  Bytes joined() const {
    const TextEncoding encoding = areLatin1_ ? TextEncoding::latin1 : TextEncoding::UTF16;
    Bytes bytes{static_cast<std::uint8_t>(encoding)};
    for (const Piece& piece : pieces_) {
      if (const auto* raw = std::get_if<ByteView>(&piece)) platform::append(bytes, *raw);
      if (const auto* text = std::get_if<TerminatedText>(&piece)) {
        appendTerminated(bytes, encoding, text->text);
      }
      if (const auto* last = std::get_if<LastTexts>(&piece)) appendLastText(bytes, encoding, last->texts);
    }
    return bytes;
  }

 private:
  bool takeRaw(std::size_t count) {
    if (count > rest_.size()) return false;
    pieces_.emplace_back(rest_.first(count));
    rest_ = rest_.subspan(count);
    return true;
  }

  bool takeText() {
    const Cut cut = decoder_.cut(rest_);
    auto text = decoder_.text(cut.text);
    if (!cut.isTerminated || !text) return false;
    note(*text);
    pieces_.emplace_back(TerminatedText{std::move(*text)});
    rest_ = cut.rest;
    return true;
  }

  bool takeLastTexts() {
    auto texts = decoder_.values(rest_);
    if (!texts) return false;
    note(*texts);
    pieces_.emplace_back(LastTexts{std::move(*texts)});
    rest_ = {};
    return true;
  }

  void note(std::string_view text) { areLatin1_ = areLatin1_ && encodingFor({text}) == TextEncoding::latin1; }

  TextDecoder decoder_;
  ByteView rest_;
  std::vector<Piece> pieces_;
  /// All texts so far fit into ISO-8859-1.
  bool areLatin1_ = true;
};

}  // namespace

std::optional<Bytes> withTextsOfV23(std::string_view identifier, ByteView content) {
  const auto layout = std::ranges::find(layouts, identifier, &Layout::identifier);
  if (layout == layouts.end() || content.empty()) return std::nullopt;
  const auto decoder = TextDecoder::forEncoding(content[0]);
  if (!decoder || decoder->encoding() == TextEncoding::latin1 || decoder->encoding() == TextEncoding::UTF16) {
    return std::nullopt;
  }
  Pieces pieces(*decoder, content.subspan(1));
  for (const char field : layout->fields) {
    if (!pieces.take(field)) return std::nullopt;
  }
  return pieces.joined();
}

}  // namespace ID3v2
