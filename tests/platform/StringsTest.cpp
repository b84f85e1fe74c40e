#include "platform/base/Strings.h"

#include <gtest/gtest.h>

namespace tests {

using namespace std::string_view_literals;

TEST(Text, ShowsControlCharactersVisibly) {
  using platform::Strings::visible;
  EXPECT_EQ(visible("é\u20AC😀 \\ \u200D\u2069\u061C"), "é\u20AC😀 \\ \u200D\\u2069\\u061c");
  EXPECT_EQ(visible("\x1B[2J\x7F\u0085\u009B\u202E\n\t\xFF\xE2\x80z"),
            "\\x1b[2J\\x7f\\u0085\\u009b\\u202e\\x0a\\x09\\xff\\xe2\\x80z");
  // NOLINTNEXTLINE(misc-misleading-bidirectional)
  EXPECT_EQ(visible("\x1F ~\u009F\u00A0\u061B\u061D\u200E\u200F\u2010\u2029\u202A\u202F\u2065\u2066\u206A"),
            "\\x1f ~\\u009f\u00A0\u061B\u061D\\u200e\\u200f\u2010\u2029\\u202a\u202F\u2065\\u2066\u206A");
  // A wide character takes two columns, and a combining character takes none.
  EXPECT_EQ(platform::Strings::columnsOf("a\u0301\u4E2D😀\u05D0"), 6U);
  EXPECT_EQ(platform::Strings::fitting("a\u0301\u4E2D\u4E2D", 4), "a\u0301\u4E2D");
}

TEST(Text, ConvertsCharactersAtTheBoundariesOfTheEncodings) {
  using namespace platform::Strings;
  using platform::bytesOf;
  struct {
    const char* text;
    std::string_view utf16;
    bool isLatin1 = false;
  } const rows[] = {{"\x7F\u0080", "\x7F\0\x80\0"sv, true},
                    {"\u00FF", "\xFF\0"sv, true},
                    {"\u0100\u07FF\u0800", "\0\1\xFF\7\0\x8"sv},
                    {"\uD7FF\uE000\uFFFF", "\xFF\xD7\0\xE0\xFF\xFF"sv},
                    {"\U00010000\U000103FF", "\0\xD8\0\xDC\0\xD8\xFF\xDF"sv},
                    {"\U00010400\U0010FFFF", "\1\xD8\0\xDC\xFF\xDB\xFF\xDF"sv}};
  for (const auto& [text, utf16, isLatin1] : rows) {
    const std::string marked = "\xFF\xFE" + std::string(utf16);
    EXPECT_EQ(fromUTF16(bytesOf(marked)), text);
    const auto converted = toUTF16WithMark(text);
    ASSERT_TRUE(converted) << text;
    EXPECT_EQ(platform::charactersOf(*converted), marked) << text;
    const auto latin1 = toLatin1(text);
    EXPECT_EQ(latin1.has_value(), isLatin1) << text;
    if (latin1) {
      EXPECT_EQ(fromLatin1(*latin1), text);
    }
  }
  // Surrogates without the other half, or in the wrong order.
  for (const std::string_view half : {"\0\xD8"sv, "\xFF\xDB"sv, "\0\xDC"sv, "\xFF\xDF"sv, "\0\xD8\0\xD8"sv,
                                      "\0\xD8\xFF\xDB"sv, "\0\xD8\0\xE0"sv, "\0\xDC\0\xD8"sv})
    EXPECT_EQ(fromUTF16(bytesOf(half)), std::nullopt) << testing::PrintToString(half);
}

TEST(Text, ComparesNamesAsAFolderThatIgnoresCaseDoes) {
  using platform::Strings::equalIgnoringCaseAndForm;
  EXPECT_TRUE(equalIgnoringCaseAndForm("STRASSE \u00C9.mp3", "stra\u00DFe e\u0301.MP3"));
  EXPECT_FALSE(equalIgnoringCaseAndForm("e.mp3", "\u00E9.mp3"));
  EXPECT_TRUE(equalIgnoringCaseAndForm("a\xFF", "a\xFF"));
  EXPECT_FALSE(equalIgnoringCaseAndForm("a\xFF", "A\xFF"));
}

}  // namespace tests
