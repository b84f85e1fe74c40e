#include "ID3TagEditor/parse/TextDecoding.h"

#include <string>

#include "ID3TagEditor/parse/ContentAdapters.h"
#include "fuzz/FuzzTarget.h"
#include "platform/Text.h"

namespace Text = platform::Text;
using namespace ID3TagEditor;

namespace {

void checkTrimming(std::string_view text) {
  for (const auto trim : {Text::trimmingWhiteSpace, Text::trimmingBlanks, Text::trimmingNulls}) {
    const std::string_view trimmed = trim(text);
    require(text.find(trimmed) != std::string_view::npos, "trimming takes off the ends alone");
    require(Text::isValidUTF8(trimmed) && trim(trimmed) == trimmed, "trimming leaves nothing to trim");
  }
}

void checkGenre(std::string_view text) {
  const ID3FrameGenre genre = ID3GenreStringAdapter().adapt(text);
  if (genre.identifier) {
    const std::string written = "(" + std::to_string(rawValue(*genre.identifier)) + ")";
    require(ID3GenreStringAdapter().adapt(written + genre.description.value_or("")) == genre,
            "a genre with a number is read as it was");
  } else {
    // The characters are all there, or those from the first parenthesis on, in another order.
    const std::size_t opening = text.find('(');
    require(genre.description && genre.description->size() <= text.size(), "a genre's text is not made up");
    require(opening != std::string_view::npos || genre.description == text, "a plain text stays");
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
  checkGenre(text);
  const ID3FramePartOfTotal position = ID3PartOfTotalStringAdapter().adapt(text);
  const std::string total = position.total ? "/" + std::to_string(*position.total) : "";
  require(ID3PartOfTotalStringAdapter().adapt(std::to_string(position.part) + total) == position,
          "a position is read as it was");
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

  // The input as the body of a text frame, its first byte the one that tells the encoding.
  for (const ID3Version version : allVersions) {
    platform::Bytes frame(ID3FrameConfiguration().headerSizeFor(version));
    platform::append(frame, input);
    const auto text = ID3FrameStringContentParser().parse(frame, version);
    require(!text || Text::isValidUTF8(*text), "a frame's text is UTF-8");
    require(!text || text->empty() || (text->front() != '\0' && text->back() != '\0'), "without padding");
  }
}
