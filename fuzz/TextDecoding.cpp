#include <string>

#include "fuzz/FuzzTarget.h"
#include "platform/Text.h"

namespace Text = platform::Text;

namespace {

void checkTrimming(std::string_view text) {
  for (const auto trim : {Text::trimmingWhiteSpace, Text::trimmingBlanks, Text::trimmingNulls}) {
    const std::string_view trimmed = trim(text);
    require(text.find(trimmed) != std::string_view::npos, "trimming takes off the ends alone");
    require(Text::isValidUTF8(trimmed) && trim(trimmed) == trimmed, "trimming leaves nothing to trim");
  }
}

void checkText(const std::string& text) {
  require(Text::isValidUTF8(text), "decoded text is UTF-8");
  require(Text::fromUTF8Lossily(text) == text, "valid text needs no repair");
  const platform::Bytes utf16 = Text::toUTF16WithMark(text).value();
  require(Text::fromUTF16(utf16) == text, "UTF-16 is read as it was");
  if (const auto latin1 = Text::toLatin1(text)) {
    require(Text::fromLatin1(*latin1) == text, "Latin-1 is read as it was");
    require(latin1->size() == Text::characterCount(text), "a byte stands for each character");
  }
  for (const std::string_view piece : Text::split(text, '-')) {
    require(!piece.empty() && piece.find('-') == std::string_view::npos, "pieces hold no separator");
  }
  checkTrimming(text);
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  checkText(Text::fromLatin1(input));
  checkText(Text::fromUTF8Lossily(platform::charactersOf(input)));
  const auto utf8 = Text::fromUTF8(input);
  const bool isText = Text::isValidUTF8(platform::charactersOf(input));
  require(utf8.has_value() == isText, "all of UTF-8 is read");
  require(Text::toUTF16WithMark(platform::charactersOf(input)).has_value() == isText,
          "and nothing else written");
  if (const auto utf16 = Text::fromUTF16(input)) checkText(*utf16);
}
