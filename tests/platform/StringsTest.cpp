#include "platform/base/Strings.h"

#include <gtest/gtest.h>

namespace tests {

TEST(Text, ShowsWhatWouldCommandATerminal) {
  using platform::Strings::visible;
  EXPECT_EQ(visible("é\u20AC😀 \\ \u200D\u2069\u061C"), "é\u20AC😀 \\ \u200D\\u2069\\u061c");
  EXPECT_EQ(visible("\x1B[2J\x7F\u0085\u009B\u202E\n\t\xFF\xE2\x80z"),
            "\\x1b[2J\\x7f\\u0085\\u009b\\u202e\\x0a\\x09\\xff\\xe2\\x80z");
  // A wide character takes two columns, a combining one none.
  EXPECT_EQ(platform::Strings::columnsOf("a\u0301\u4E2D😀\u05D0"), 6U);
  EXPECT_EQ(platform::Strings::fitting("a\u0301\u4E2D\u4E2D", 4), "a\u0301\u4E2D");
}

}  // namespace tests
