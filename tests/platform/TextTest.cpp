#include "platform/Text.h"

#include <gtest/gtest.h>

namespace tests {

TEST(Text, ReplacesWhatIsNoUTF8) {
  for (const auto& [bytes, text] : {std::pair<std::string, std::string>{"é\u20AC😀", "é\u20AC😀"},
                                    {"\xE9t\xE9", "\uFFFDt\uFFFD"},
                                    {"a\xC3", "a\uFFFD"}}) {
    EXPECT_EQ(platform::Text::fromUTF8Lossily(bytes), text);
    EXPECT_EQ(platform::Text::isValidUTF8(bytes), bytes == text) << text;
  }
  // Overlong, a surrogate, beyond Unicode, a lone continuation.
  for (const auto* bytes : {"\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80"}) {
    EXPECT_FALSE(platform::Text::isValidUTF8(bytes)) << testing::PrintToString(bytes);
    EXPECT_TRUE(platform::Text::isValidUTF8(platform::Text::fromUTF8Lossily(bytes)));
  }
}

}  // namespace tests
