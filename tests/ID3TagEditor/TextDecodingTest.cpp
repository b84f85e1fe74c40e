#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

TEST(TextDecoding, FollowsTheEncodingByteOfTheVersion) {
  struct {
    int version;
    std::string body;
    OptionalText text;
  } const rows[] = {
      // ISO-8859-1, and encodings that are read as such.
      {3, "\0Xyz\0"s, "Xyz"},
      {3, "\3\xC3\xA9", "Ã©"},
      {4, "\2\0X"s, "X"},
      // UTF-16 with either mark and without, with surrogates, and with half a unit at the end.
      {3, "\1\xFF\xFEX\0y\0\0\0"s, "Xy"},
      {3, "\1X\0y\0"s, "Xy"},
      {3, "\1\xFE\xFF\xD8\x3D\xDE\x00"s, "😀"},
      {3, "\1\xFF\xFEX\0\x3D\xD8"s, {}},
      {3, "\1\xFF\xFEX\0y"s, "X"},
      // Invalid UTF-16, but valid UTF-8.
      {3, "\1X\xD8\x80Y"s, "X\u0600Y"},
      {4, "\3\xC3\xA9", "é"},
      {4, "\3\xFFX", {}},
      // Only zero characters are removed from the ends.
      {3, "\0\0\0"s, ""},
      {3, "\0\0X\0Y\0\0"s, "X\0Y"s},
      {3, "\0 X\n"s, " X\n"},
      {3, "\0"s, {}},
  };
  for (const auto& [version, body, text] : rows) {
    EXPECT_EQ(Reading(version, "TIT2", body).content.title(), text) << testing::PrintToString(body);
  }
}

}  // namespace

}  // namespace tests
