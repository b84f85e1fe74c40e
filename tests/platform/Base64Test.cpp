#include "platform/Base64.h"

#include <gtest/gtest.h>

#include <string>

namespace tests {

namespace {

using namespace std::string_literals;

TEST(Base64, EncodesAndDecodes) {
  struct {
    std::string bytes, text;
  } const rows[] = {{"", ""},
                    {"f", "Zg=="},
                    {"fo", "Zm8="},
                    {"foo", "Zm9v"},
                    {"foobar", "Zm9vYmFy"},
                    {"\xFF\xD8\xFF", "/9j/"},
                    {"\xFB\xEF\xBE\0"s, "++++AA=="}};
  for (const auto& [bytes, text] : rows) {
    SCOPED_TRACE(text);
    EXPECT_EQ(platform::Base64::encode(platform::bytesOf(bytes)), text);
    EXPECT_EQ(platform::Base64::decode(text), platform::Bytes(bytes.begin(), bytes.end()));
  }
}

TEST(Base64, RefusesWhatIsNone) {
  for (const std::string text : {"Z", "Zg", "Zg=", "Zm9v\n", "Zm 9", "Zg==Zg==", "=Zm9",
                                 "====", "Z===", "Zm9_", "Zm9-", "Zm\xC3\xA9"}) {
    EXPECT_FALSE(platform::Base64::decode(text)) << text;
  }
}

}  // namespace

}  // namespace tests
