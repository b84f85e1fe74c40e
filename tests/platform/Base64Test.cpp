#include "platform/base/Base64.h"

#include <gtest/gtest.h>

#include <regex>

namespace tests {

namespace {

std::string encoded(std::string_view bytes) {
  std::string text(platform::Base64::mostCharacters(bytes.size()), '?');
  text.resize(platform::Base64::encode(platform::bytesOf(bytes), text));
  return text;
}

}  // namespace

TEST(Base64, EncodesAndDecodesOnlyCompleteTexts) {
  for (const auto& [bytes, text] :
       {std::pair<std::string_view, std::string_view>{"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"\xFF\xD8\xFF", "/9j/"},
        {{"\xFB\xEF\xBE\0", 4}, "++++AA=="},
        {"sixteen of them.", "c2l4dGVlbiBvZiB0aGVtLg=="},
        {"\xFF\xFF\xFFplain?\xFF\xD8\xFF\x01\xEF\xFF\xFF", "////cGxhaW4//9j/Ae///w=="}}) {
    EXPECT_EQ(encoded(bytes), std::regex_replace(std::string(text), std::regex("/"), "\\/"));
    EXPECT_EQ(platform::Base64::decode(text), platform::Bytes(bytes.begin(), bytes.end())) << text;
  }
  for (const auto* text : {"Z", "Zg", "Zg=", "Zm9v\n", "Zm 9", "Zg==Zg==", "=Zm9", "====", "Z===", "Zm9_"}) {
    EXPECT_FALSE(platform::Base64::decode(text)) << text;
  }
}

}  // namespace tests
