#include <string>

#include "fuzz/FuzzTarget.h"
#include "platform/base/Strings.h"

namespace Strings = platform::Strings;

namespace {

void checkText(const std::string& text) {
  require(Strings::isValidUTF8(text), "decoded text is UTF-8");
  require(Strings::fromUTF8Lossily(text) == text, "valid text needs no repair");
  require(Strings::fromUTF16(Strings::toUTF16WithMark(text).value()) == text, "UTF-16 is read as it was");
  if (const auto latin1 = Strings::toLatin1(text)) {
    require(Strings::fromLatin1(*latin1) == text, "Latin-1 is read as it was");
    require(latin1->size() == Strings::characterCount(text), "a byte stands for each character");
  }
  for (const std::string_view piece : Strings::split(text, '-')) {
    require(!piece.empty() && piece.find('-') == std::string_view::npos, "pieces hold no separator");
  }
  for (const auto trim : {Strings::trimmingWhiteSpace, Strings::trimmingBlanks, Strings::trimmingNulls}) {
    const std::string_view trimmed = trim(text);
    require(text.find(trimmed) != std::string::npos, "trimming takes off the ends alone");
    require(Strings::isValidUTF8(trimmed) && trim(trimmed) == trimmed, "trimming leaves nothing to trim");
  }
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  const std::string_view bytes = platform::charactersOf(input);
  checkText(Strings::fromLatin1(input));
  checkText(Strings::fromUTF8Lossily(bytes));
  const bool isText = Strings::isValidUTF8(bytes);
  require(Strings::fromUTF8(input).has_value() == isText, "all of UTF-8 is read");
  require(Strings::toUTF16WithMark(bytes).has_value() == isText, "and nothing else written");
  if (const auto utf16 = Strings::fromUTF16(input)) checkText(*utf16);
}
