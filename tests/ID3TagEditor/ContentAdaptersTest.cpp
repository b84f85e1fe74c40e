#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

using Content = ID3TagContentReader;
/// The text of a frame and the expected description of its content.
using Rows = std::vector<std::pair<std::string, std::string>>;

/// Returns the numbers separated by spaces, with a hyphen for an absent one.
std::string shown(std::initializer_list<OptionalInteger> numbers) {
  std::string text;
  for (const auto& number : numbers)
    text += (text.empty() ? "" : " ") + (number ? std::to_string(*number) : "-");
  return text;
}

/// Reads a frame with each text in ISO-8859-1 and compares the description of its content with the expected
/// one.
void expectEach(int version, std::string_view id, const Rows& rows,
                const std::function<std::string(const Content&)>& show) {
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(show(Reading(version, id, latin1(text)).content), expected) << id << " " << text;
  }
}

TEST(ContentAdapters, ReadGenres) {
  const Rows rows{{"(17)", "rock"},
                  {"Rock", "no genre: Rock"},
                  {"Rock (17)", "rock"},
                  {"(81)", "cover"},
                  {"(82)", "no genre: (82)"},
                  {"(CR)Live", "cover: Live"},
                  {"(99999999999999999999)", "no genre: (99999999999999999999)"},
                  {"(foo)Bar", "no genre: Bar(foo)"},
                  {"x(\xE9t\xE9)y", "no genre: y(été)"},
                  {"", "no genre: "},
                  {"((17)", "rock"},
                  {"(Hip Hop)(17)x", "rock: x"}};
  expectEach(3, "TCON", rows, [](const Content& content) {
    const Genre read = content.genre().value();
    const std::string name(read.identifier ? caseName(*read.identifier) : "no genre");
    return name + (read.description ? ": " + *read.description : "");
  });
}

TEST(ContentAdapters, ReadNumbers) {
  const Rows positions{{"3/12", "3 12"},  {"3", "3 -"},       {"/12", "0 12"},   {"x/y", "0 -"},
                       {"3 / 12", "0 -"}, {"3/12/5", "3 12"}, {"+3/-1", "3 -1"}, {"", "0 -"}};
  expectEach(3, "TRCK", positions, [](const Content& content) {
    return shown({content.trackPosition()->position, content.trackPosition()->total});
  });
  const Rows integers{{"+5", "5"}, {"-5", "-5"}, {"120.5", "-"}, {" 5", "-"},
                      {"+", "-"},  {"", "-"},    {"\xB2", "-"},  {"9223372036854775808", "-"}};
  expectEach(3, "TBPM", integers, [](const Content& content) { return shown({content.beatsPerMinute()}); });
  EXPECT_TRUE(Reading(3, "TBPM", "\0x"s).tag.frames.contains(Name::beatsPerMinute));
}

TEST(ContentAdapters, ReadRecordingTimes) {
  const std::string none = "- - - - -";
  const Rows rows{{"9999", "- - 9999 - -"},
                  {"-5", "- - -5 - -"},
                  {"9999.5", "1 1 1970 2 46"},
                  {"951782400", "29 2 2000 0 0"},
                  {"+0X1P14", "1 1 1970 4 33"},
                  {"0x-1p14", none},
                  {"0xFFFFp+-1", none},
                  {"+-10000", none},
                  {"inf", none},
                  {"", none}};
  expectEach(4, "TDRC", rows, [](const Content& content) {
    const DateTime time = content.recordingDateTime().value();
    return shown({time.day, time.month, time.year, time.hour, time.minute});
  });
}

}  // namespace

}  // namespace tests
