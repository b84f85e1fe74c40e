#include "platform/base/Base64.h"

#include <gtest/gtest.h>

namespace tests {

TEST(Base64, EncodesAndDecodesWhatIsWhole) {
  for (const auto& [bytes, text] : {std::pair<std::string_view, std::string_view>{"", ""},
                                    {"f", "Zg=="},
                                    {"fo", "Zm8="},
                                    {"\xFF\xD8\xFF", "/9j/"},
                                    {{"\xFB\xEF\xBE\0", 4}, "++++AA=="}}) {
    EXPECT_EQ(platform::Base64::encode(platform::bytesOf(bytes)), text);
    EXPECT_EQ(platform::Base64::decode(text), platform::Bytes(bytes.begin(), bytes.end())) << text;
  }
  for (const auto* text : {"Z", "Zg", "Zg=", "Zm9v\n", "Zm 9", "Zg==Zg==", "=Zm9", "====", "Z===", "Zm9_"}) {
    EXPECT_FALSE(platform::Base64::decode(text)) << text;
  }
}

}  // namespace tests
