#include "platform/JSON.h"

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

std::optional<std::int64_t> integerIn(const char* document) {
  const JSON::Value value = JSON::parse(document);
  return value.number() != nullptr ? value.number()->integer() : std::nullopt;
}

TEST(JSON, TellsWhichNumbersAreIntegers) {
  const std::pair<const char*, std::int64_t> integers[] = {{"1977", 1977},
                                                           {"1977.000", 1977},
                                                           {"1.977e3", 1977},
                                                           {"197700E-2", 1977},
                                                           {"-0", 0},
                                                           {"-0.0e5", 0},
                                                           {"0e999999999999999999999", 0},
                                                           {"9223372036854775807", INT64_MAX},
                                                           {"-9.223372036854775808E18", INT64_MIN},
                                                           {"9007199254740993.0", 9007199254740993}};
  for (const auto& [document, integer] : integers) EXPECT_EQ(integerIn(document), integer) << document;
  for (const auto* document : {"1977.5", "1e-1", "1e-400", "9223372036854775808", "-9223372036854775809",
                               "18446744073709551617", "1e19", "1e300"}) {
    EXPECT_EQ(integerIn(document), std::nullopt) << document;
  }
  // Beyond what a number can be: no document is better than a wrong number.
  EXPECT_TRUE(isRefused("1e400") || !integerIn("1e400"));
}

TEST(JSON, RefusesWhatIsNone) {
  for (const std::string& document : {""s,
                                      "{"s,
                                      "{}x"s,
                                      "{}\0x"s,
                                      "{} {}"s,
                                      "[1,]"s,
                                      "{\"a\":1,}"s,
                                      "{a:1}"s,
                                      "{'a':1}"s,
                                      "01"s,
                                      "+1"s,
                                      ".5"s,
                                      "1."s,
                                      "0x10"s,
                                      "NaN"s,
                                      "Infinity"s,
                                      "tru"s,
                                      "\"a"s,
                                      "\"\n\""s,
                                      "\"\\x\""s,
                                      "\"\\ud83d\""s,
                                      "\"\\ude00\""s,
                                      "\"\xFF\""s,
                                      "\"\xC0\x80\""s,
                                      "\"\xED\xA0\x80\""s,
                                      "// a\n1"s,
                                      "/**/1"s}) {
    EXPECT_TRUE(isRefused(document)) << testing::PrintToString(document);
  }
}

TEST(JSON, BoundsTheDepthOfADocument) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_FALSE(isRefused(nested(512)));
  EXPECT_TRUE(isRefused(nested(513)));
  EXPECT_TRUE(isRefused(std::string(1000000, '[')));
  EXPECT_TRUE(isRefused("{\"a\":" + nested(512) + "}"));
}

TEST(JSON, TakesTheLaterOfTwoMembers) {
  const JSON::Value value = JSON::parse(R"({"a": {"b": 1}, "a": {"c": 2}, "\u0061": [true]})");
  EXPECT_EQ(JSON::print(value, JSON::Layout::compact), R"({"a":[true]})");
}

TEST(JSON, PrintsStringsThatAreReadBack) {
  struct {
    std::string string, printed;
  } const rows[] = {{"a/b", R"("a\/b")"},
                    {"\"\\", R"("\"\\")"},
                    {"\b\f\n\r\t", R"("\b\f\n\r\t")"},
                    {"\0\1\x1F"s, R"("\u0000\u0001\u001f")"},
                    {"é😀\x7F\u2028", "\"é😀\x7F\u2028\""}};
  for (const auto& [string, printed] : rows) {
    SCOPED_TRACE(printed);
    EXPECT_EQ(JSON::print(JSON::Value(string), JSON::Layout::pretty), printed);
    const JSON::Value read = JSON::parse(printed);
    ASSERT_NE(read.string(), nullptr);
    EXPECT_EQ(*read.string(), string);
  }
  EXPECT_EQ(*JSON::parse(R"("\ud83d\ude00\/")").string(), "😀/");
}

TEST(JSON, PrintsDocumentsInBothLayouts) {
  const std::string compact =
      R"({"A":{},"a":[1,-2.50,null,false],"b\/c":{"d":"e","f":{}},"é":9223372036854775807})";
  const JSON::Value value = JSON::parse(compact);
  EXPECT_EQ(JSON::print(value, JSON::Layout::compact), compact);
  EXPECT_EQ(JSON::print(value, JSON::Layout::pretty), R"({
  "A" : {

  },
  "a" : [
    1,
    -2.50,
    null,
    false
  ],
  "b\/c" : {
    "d" : "e",
    "f" : {

    }
  },
  "é" : 9223372036854775807
})");
  EXPECT_EQ(JSON::print(JSON::parse("{}"), JSON::Layout::pretty), "{\n\n}");
}

}  // namespace

}  // namespace tests
