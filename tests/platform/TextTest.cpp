#include "platform/Text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tests {

namespace {

using namespace std::string_literals;
namespace Text = platform::Text;

TEST(Text, ReplacesWhatIsNoUTF8) {
  struct {
    std::string bytes, text;
  } const rows[] = {{"é\u20AC😀", "é\u20AC😀"},
                    {"a\xFF"
                     "b",
                     "a\uFFFDb"},
                    {"\xE9t\xE9", "\uFFFDt\uFFFD"},
                    {"a\xC3", "a\uFFFD"},
                    {"", ""}};
  for (const auto& [bytes, text] : rows) {
    SCOPED_TRACE(testing::PrintToString(bytes));
    EXPECT_EQ(Text::fromUTF8Lossily(bytes), text);
    EXPECT_EQ(Text::isValidUTF8(bytes), bytes == text);
  }
  // Overlong, a surrogate, beyond Unicode, a lone continuation.
  for (const std::string bytes :
       {"\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80", "\xF8\x88\x80\x80\x80"}) {
    EXPECT_FALSE(Text::isValidUTF8(bytes)) << testing::PrintToString(bytes);
    EXPECT_TRUE(Text::isValidUTF8(Text::fromUTF8Lossily(bytes))) << testing::PrintToString(bytes);
  }
}

TEST(Text, TrimsBlanksOrAllWhiteSpace) {
  struct {
    std::string text, withoutBlanks, withoutWhiteSpace;
  } const rows[] = {{" \ta b\t ", "a b", "a b"},
                    {"\n a \r\n", "\n a \r\n", "a"},
                    {"\u00A0\u3000\u2003\u202Fa\u1680", "a", "a"},
                    {"\u2028\u2029\u0085\va\f", "\u2028\u2029\u0085\va\f", "a"},
                    {"\u200Ba\uFEFF", "\u200Ba\uFEFF", "\u200Ba\uFEFF"},
                    {" \u2003\t", "", ""},
                    {"", "", ""}};
  for (const auto& [text, withoutBlanks, withoutWhiteSpace] : rows) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_EQ(Text::trimmingBlanks(text), withoutBlanks);
    EXPECT_EQ(Text::trimmingWhiteSpace(text), withoutWhiteSpace);
  }
}

TEST(Text, ReadsFloatingPointLiteralsAsAWhole) {
  struct {
    std::string text;
    std::optional<double> value;
  } const rows[] = {
      {"1", 1.0},  {"-1.5e3", -1500.0}, {"+0x1p4", 16.0}, {"inf", HUGE_VAL}, {"-infinity", -HUGE_VAL},
      {"", {}},    {" 1", {}},          {"1 ", {}},       {"1x", {}},        {"1\0"s, {}},
      {"0,5", {}}, {"e5", {}},          {"--1", {}},      {"\v1", {}}};
  for (const auto& [text, value] : rows) EXPECT_EQ(Text::floatingPoint(text), value) << text;
  EXPECT_TRUE(std::isnan(Text::floatingPoint("nan").value()));
}

TEST(Text, SplitsWithoutEmptyPieces) {
  using Pieces = std::vector<std::string_view>;
  EXPECT_EQ(Text::split(",a,,b c,", ','), (Pieces{"a", "b c"}));
  EXPECT_EQ(Text::split("a", ','), Pieces{"a"});
  EXPECT_EQ(Text::split(",", ','), Pieces{});
}

}  // namespace

}  // namespace tests
