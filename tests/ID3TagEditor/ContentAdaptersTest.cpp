#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

using Content = ID3TagContentReader;

struct Row {
  std::string text, expected;
};

/// The numbers with a space between them, a hyphen for an absent one.
std::string shown(std::initializer_list<OptionalInteger> numbers) {
  std::string text;
  for (const auto& number : numbers)
    text += (text.empty() ? "" : " ") + (number ? std::to_string(*number) : "-");
  return text;
}

/// Reads a frame of each text in ISO-8859-1 and holds what is shown of it against the expected.
void expectEach(int version, std::string_view id, const std::vector<Row>& rows,
                const std::function<std::string(const Content&)>& show) {
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(show(Reading(version, id, latin1(text)).content), expected) << id << " " << text;
  }
}

TEST(ContentAdapters, ReadGenres) {
  const auto genre = [](const Content& content) {
    const Genre read = content.genre().value();
    const std::string name(read.identifier ? caseName(*read.identifier) : "no genre");
    return name + (read.description ? ": " + *read.description : "");
  };
  expectEach(3, "TCON",
             {{"(17)", "rock"},
              {"(17)Rock", "rock: Rock"},
              {"(017)", "rock"},
              {"Rock", "no genre: Rock"},
              {"Rock (17)", "rock"},
              {"(17)(18)", "rock: (18)"},
              {"(0)", "blues"},
              {"(79)", "hardRock"},
              {"(80)", "remix"},
              {"(81)", "cover"},
              {"(82)", "no genre: (82)"},
              {"(RX)", "remix"},
              {"(CR)Live", "cover: Live"},
              {"(rx)", "no genre: (rx)"},
              {"(255)", "no genre: (255)"},
              {"(99999999999999999999)", "no genre: (99999999999999999999)"},
              {"(foo)Bar", "no genre: Bar(foo)"},
              {"(foo_1)", "no genre: (foo_1)"},
              {"x(\xE9t\xE9)y", "no genre: y(été)"},
              {"()", "no genre: ()"},
              {"", "no genre: "},
              {"(17", "no genre: (17"},
              {"((17)", "rock"},
              {"(-1)", "no genre: (-1)"},
              {"(Hip Hop)(17)x", "rock: x"}},
             genre);
}

TEST(ContentAdapters, ReadPositions) {
  const std::vector<Row> rows{{"3/12", "3 12"},  {"3", "3 -"},       {"/12", "0 12"},
                              {"3/", "3 -"},     {"/", "0 -"},       {"x/y", "0 -"},
                              {"3 / 12", "0 -"}, {"3/12/5", "3 12"}, {"3//12", "3 -"},
                              {"+3/-1", "3 -1"}, {"", "0 -"},        {"1/9223372036854775808", "1 -"}};
  expectEach(3, "TRCK", rows, [](const Content& content) {
    return shown({content.trackPosition()->position, content.trackPosition()->total});
  });
  expectEach(2, "TPA", rows, [](const Content& content) {
    return shown({content.discPosition()->position, content.discPosition()->total});
  });
}

TEST(ContentAdapters, ReadCouplesOfNumbers) {
  const std::vector<Row> rows{{"0512", "5 12"}, {"512", "5 2"},   {"1", "- -"},       {"", "- -"},
                              {"12ab", "12 -"}, {"ab12", "- 12"}, {"12:30", "12 30"}, {"1\3512", "1 2"},
                              {"1\xE9", "1 -"}, {"xy2", "- 2"}};
  expectEach(3, "TDAT", rows, [](const Content& content) {
    return shown({content.recordingDayMonth()->day, content.recordingDayMonth()->month});
  });
  expectEach(3, "TIME", rows, [](const Content& content) {
    return shown({content.recordingHourMinute()->hour, content.recordingHourMinute()->minute});
  });
}

TEST(ContentAdapters, ReadIntegersAndKeepFramesWithoutOne) {
  expectEach(3, "TBPM",
             {{"120", "120"},
              {"+5", "5"},
              {"-5", "-5"},
              {"120.5", "-"},
              {" 5", "-"},
              {"5 ", "-"},
              {"+", "-"},
              {"+-5", "-"},
              {"0x10", "-"},
              {"", "-"},
              {"\xB2", "-"},
              {"9223372036854775808", "-"},
              {"-9223372036854775808", "-9223372036854775808"}},
             [](const Content& content) { return shown({content.beatsPerMinute()}); });
  EXPECT_TRUE(Reading(3, "TBPM", "\0x"s).tag.frames.contains(Name::beatsPerMinute));
}

TEST(ContentAdapters, ReadRecordingTimes) {
  expectEach(4, "TDRC",
             {{"2023", "- - 2023 - -"},
              {"9999", "- - 9999 - -"},
              {"-5", "- - -5 - -"},
              {"12.5", "- - - - -"},
              {"10000", "1 1 1970 2 46"},
              {"9999.5", "1 1 1970 2 46"},
              {"1e5", "2 1 1970 3 46"},
              {"0x1p14", "1 1 1970 4 33"},
              {"951782400", "29 2 2000 0 0"},
              {"1700000000", "14 11 2023 22 13"},
              {" 10000", "- - - - -"},
              {"10000 ", "- - - - -"},
              {"2023-05-17T10:30", "- - - - -"},
              {"inf", "- - - - -"},
              {"nan", "- - - - -"},
              {"1e18", "- - - - -"},
              {"", "- - - - -"}},
             [](const Content& content) {
               const DateTime time = content.recordingDateTime().value();
               return shown({time.day, time.month, time.year, time.hour, time.minute});
             });
}

}  // namespace

}  // namespace tests
