#include "QuillmarkKit/store/ID3Frames.h"

#include <gtest/gtest.h>

#include "tests/FileState.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;

namespace {

/// The frames one behind the other as v2.3 has them.
std::string joined(const std::vector<ID3Frame>& frames) {
  std::string bytes;
  for (const ID3Frame& each : frames)
    bytes += frame(each.id, platform::charactersOf(each.payload), each.flags);
  return bytes;
}

std::string tagOf(const std::vector<ID3Frame>& frames, std::size_t padding = 0) {
  return std::string(platform::charactersOf(ID3Frames::tagData(frames, padding, "track.mp3")));
}

const ID3Frame txxx{.id = "TXXX", .flags = 0, .payload = bytesFrom("12345")};
const ID3Frame priv{.id = "PRIV", .flags = 0x6080, .payload = bytesFrom(std::string(300, 'p'))};

}  // namespace

TEST(ID3FramesTest, ParsesTheFramesOfATag) {
  const std::string a = frame("AAAA", "a", 0xE0A1);
  const std::string b = frame("B0Z9", "\0"sv);
  const std::string sizeOf17F = "TXXX\0\0\1\x7F\0\0"s;
  struct Row {
    int version;
    std::uint8_t flags;
    std::string body;
    std::string frames;
  };
  for (const Row& row : std::vector<Row>{
           {3, 0, a + b, a + b},
           {3, 0, sizeOf17F + std::string(383, 'x'), frame("TXXX", std::string(383, 'x'))},
           {4, 0, sizeOf17F + std::string(255, 'x') + a, frame("TXXX", std::string(255, 'x')) + a},
           {3, 0, std::string(25, '\0'), ""},
           {3, 0, a + std::string(10, '\0') + b, a},
           {3, 0, a + frame("BBBb", "b") + a, a},
           {3, 0, a + frame("BBBB", "") + a, a},
           {3, 0, a + "BBBB\0\0\0\2\0\0b"s, a},
           {3, 0, a + "BBBB\xFF\xFF\xFF\xF6\0\0bbbbbbbbbb"s, a},
           {3, 0, a + "BBBB\0\0\0\1\0"s, a},
           {2, 0, "TT2\0\0\6\0Kyrie"s + a, ""},
           {3, 0x80, "PRIV\0\0\0\5\0\0\xFF\0\xE0\xFF\0\0\xFF\0"s + a,
            frame("PRIV", "\xFF\xE0\xFF\0\xFF"sv) + a},
           {4, 0x80, "PRIV\0\0\0\2\0\2\xFF\0\xE0"s, frame("PRIV", "\xFF\xE0", 2)},
           {3, 0x40, "\0\0\0\6\0\0\0\0\0\0"s + a, a},
           {4, 0x40, "\0\0\0\6\1\0"s + a, a},
       }) {
    SCOPED_TRACE(testing::PrintToString(row.body));
    const std::string tag = TagBytes(row.version).revision(9).flags(row.flags).raw(row.body).characters();
    const auto parsed = ID3Frames::parse(bytesFrom(tag + audio(64)));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->version, row.version);
    EXPECT_EQ(parsed->audioOffset, tag.size());
    EXPECT_EQ(joined(parsed->frames), row.frames);
  }
}

TEST(ID3FramesTest, SeesNoTagWhereNoneIsWhole) {
  for (const std::string& bytes :
       {"ID3\3\0\0\0\0\0"s, audio(64), TagBytes(3).characters() + audio(64),
        TagBytes(3).padding(20).declaring(21).characters(), TagBytes(3).flags(0x40).padding(3).characters(),
        TagBytes(3).flags(0x40).raw("\0\0\0\7\0\0\0\0\0\0"s).characters(),
        TagBytes(3).flags(0x40).raw("\xFF\xFF\xFF\xFC\0\0"s).characters(),
        TagBytes(4).flags(0x40).padding(20).characters()}) {
    EXPECT_FALSE(ID3Frames::parse(bytesFrom(bytes))) << testing::PrintToString(bytes);
  }
}

TEST(ID3FramesTest, BuildsATag) {
  EXPECT_EQ(tagOf({}), "ID3\3\0\0\0\0\0\0"s);
  EXPECT_EQ(tagOf({txxx, {.id = "TT2", .flags = 0, .payload = txxx.payload}}),
            "ID3\3\0\0\0\0\0\x0FTXXX\0\0\0\5\0\0"s + "12345");
  EXPECT_EQ(tagOf({priv}, 1024),
            "ID3\3\0\0\0\0\x0A\x36PRIV\0\0\1\x2C\x60\x80"s + std::string(300, 'p') + std::string(1024, '\0'));
}

TEST(ID3FramesTest, RefusesATagThatItsSizeFieldCannotTell) {
  constexpr std::size_t limit = std::size_t{1} << 28;
  const auto message = "track.mp3: its tag would be larger than 256 MiB, more than an ID3 tag can hold.";
  EXPECT_EQ(messageOf([] { tagOf({}, limit); }), message);
  const ID3Frame sixteenth{.id = "PRIV", .flags = 0, .payload = platform::Bytes(limit / 16 - 10)};
  EXPECT_EQ(messageOf([&] { tagOf(std::vector<ID3Frame>(16, sixteenth)); }), message);
}

TEST(ID3FramesTest, RewritesFiles) {
  const TemporaryFolder folder;
  const std::string managed = frame("APIC", "picture");
  const std::string unmanaged = frame("PRIV", "p", 1) + frame("TDRC", "1977");
  const auto file = folder.file("track.mp3", track(managed + unmanaged + managed, 50));
  const auto found = ID3Frames::unmanagedFrames(file);
  EXPECT_EQ(joined(found), unmanaged);

  ID3Frames::append({txxx}, file);
  EXPECT_EQ(contentsOf(file), track(managed + unmanaged + managed + joined({txxx})));
  ID3Frames::write(found, file, file);
  EXPECT_EQ(contentsOf(file), track(unmanaged));
  EXPECT_EQ(folder.entryCount(), 1);
}

TEST(ID3FramesTest, AppendsToNothingButATag) {
  const TemporaryFolder folder;
  const auto file = folder.file("track.mp3", audio());
  const FileState before(file);
  ID3Frames::append({}, file);
  EXPECT_EQ(messageOf([&] { ID3Frames::append({txxx}, file); }),
            "track.mp3: the ID3 tag could not be read back after writing.");
  EXPECT_TRUE(FileState(file) == before);
  EXPECT_TRUE(ID3Frames::unmanagedFrames(file).empty());
  EXPECT_TRUE(ID3Frames::unmanagedFrames(folder.path() / "missing.mp3").empty());
  ID3Frames::write({txxx}, file, file);
  EXPECT_EQ(contentsOf(file), track(joined({txxx})));
}

}  // namespace tests
