#include "platform/base/JSON.h"

#include <gtest/gtest.h>

namespace tests {

namespace {

using namespace std::string_literals;
namespace JSON = platform::JSON;

bool isRefused(std::string_view document) {
  try {
    JSON::parse(document);
  } catch (const JSON::DecodingError&) {
    return true;
  }
  return false;
}

TEST(JSON, RecognisesIntegers) {
  const std::pair<const char*, std::optional<std::int64_t>> rows[] = {{"1977.000", 1977},
                                                                      {"1.977e3", 1977},
                                                                      {"-0.0e5", 0},
                                                                      {"0e999999999999999999999", 0},
                                                                      {"9223372036854775807", INT64_MAX},
                                                                      {"-9.223372036854775808E18", INT64_MIN},
                                                                      {"1977.5", {}},
                                                                      {"1e-400", {}},
                                                                      {"1e999", {}},
                                                                      {"9223372036854775808", {}},
                                                                      {"-9223372036854775809", {}}};
  for (const auto& [document, integer] : rows) {
    const JSON::Value value = JSON::parse(document);
    ASSERT_NE(value.number(), nullptr) << document;
    EXPECT_EQ(value.number()->integer(), integer) << document;
  }
}

TEST(JSON, RefusesInvalidAndTooDeepDocuments) {
  for (const auto& document : {""s, "{}x"s, "[1,]"s, "{}\0x"s, "\"\xFF\""s, std::string(1000000, '[')})
    EXPECT_TRUE(isRefused(document)) << document.substr(0, 9);
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_FALSE(isRefused(nested(512)));
  EXPECT_TRUE(isRefused(nested(513)));
}

TEST(JSON, ReportsThePlaceAndTheExpectedToken) {
  for (const auto& [document, error] : std::vector<std::pair<std::string, std::string>>{
           {"", "it ends too early"},
           {R"({"a":1)", "it ends too early"},
           {R"(["a)", "it ends too early"},
           {"[-", "it ends too early"},
           {"{}\0x"s, "it holds a zero byte"},
           {"x", "a value was expected at line 1, column 1"},
           {"[1,]", "a value was expected at line 1, column 4"},
           {"[\"\xFF\"", "a value was expected at line 1, column 3"},
           {"{\"a\" :\n\n }", "a value was expected at line 3, column 2"},
           {R"({"a\",:" 1})", "a colon was expected at line 1, column 10"},
           {R"({"a" "b"})", "a colon was expected at line 1, column 8"},
           {"{1}", "a name in quotes was expected at line 1, column 2"},
           {R"({"a":{"b":[]},})", "a name in quotes was expected at line 1, column 15"},
           {R"({"a":",\"" "b"})", "a comma or a closing brace was expected at line 1, column 14"},
           {"[1\r\n\t2]", "a comma or a closing bracket was expected at line 2, column 2"},
           {R"([{"a":1},[0]:])", "a comma or a closing bracket was expected at line 1, column 13"},
           {"{} 1", "the end was expected at line 1, column 4"}}) {
    try {
      JSON::parse(document);
      ADD_FAILURE() << document;
    } catch (const JSON::DecodingError& thrown) {
      EXPECT_EQ(thrown.what(), "not valid JSON: " + error) << document;
    }
  }
}

TEST(JSON, PrintsStringsThatAreReadBack) {
  for (const auto& [string, printed] : {std::pair{"a/b"s, R"("a\/b")"s},
                                        {"\"\\\b\f\n\r\t", R"("\"\\\b\f\n\r\t")"},
                                        {"\0\1\x1F"s, R"("\u0000\u0001\u001f")"},
                                        {"é😀\x7F\u2028", "\"é😀\x7F\u2028\""}}) {
    EXPECT_EQ(JSON::print(JSON::Value(string), JSON::Layout::pretty), printed);
    const JSON::Value read = JSON::parse(printed);
    ASSERT_NE(read.string(), nullptr);
    EXPECT_EQ(*read.string(), string);
  }
  EXPECT_EQ(*JSON::parse(R"("\ud83d\ude00\/")").string(), "😀/");
}

}  // namespace

}  // namespace tests
