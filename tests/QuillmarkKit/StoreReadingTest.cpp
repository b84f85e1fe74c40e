#include <gtest/gtest.h>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "tests/Files.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;

namespace {

std::string picture(char type, std::string_view data) {
  return frame("APIC", "\0image/jpeg\0"s + type + '\0' + std::string(data));
}

constexpr char fileIcon = 1;
constexpr char frontCover = 3;
constexpr char backCover = 4;

}  // namespace

TEST(StoreReadingTest, TakesOneValueForAField) {
  struct Row {
    TagBytes tag;
    TagField field;
    std::optional<std::string> value;
  };
  using enum TagField;
  const auto v3 = [](std::string_view frames, std::uint8_t flags = 0) {
    return TagBytes(3, flags).raw(frames);
  };
  for (const Row& row : std::vector<Row>{
           {v3(text("TIT2", " Kyrie\n\0\0"sv)), title, "Kyrie"},
           {v3(text("TIT2", "  \n")), title, {}},
           {v3("\0\0\0\6\0\0\0\0\0\0"s + text("TIT2", "A"), 0x40), title, "A"},
           {v3(frame("PRIV", "\xFF\0\xE0"sv) + text("TIT2", "A"), 0x80), title, "A"},
           {v3(text("TDRC", "1977")), year, {}},
           {TagBytes(4).text("TDRC", "1977"), year, "1977"},
           {TagBytes(4).text("TDRC", "230385600"), year, "1977"},
           {v3(text("TCON", "(0)")), genre, "Blues"},
           {v3(text("TCON", "(14)")), genre, "R And B"},
           {v3(text("TCON", "(60)")), genre, "Top40"},
           {v3(text("TBPM", "120.5")), bpm, {}},
           {v3(frame("COMM", "\0eng\0hello"sv) + frame("COMM", "\0deu\0hallo"sv)), comment, "hallo"},
           {v3(picture(fileIcon, "\xFF\xD8\xFF\xE0") + picture(frontCover, "\xFF\xD8\xFF\xE0!")), artwork,
            "JPEG, 5 bytes"},
           {v3(picture(frontCover, "GIF89a")), artwork, {}},
       }) {
    const std::string tag = TagBytes(row.tag).padding(64).characters();
    const TemporaryFolder folder;
    const TagSet tags = ID3TagEditorStore(true).read(folder.file("track.mp3", tag + audio()));
    EXPECT_EQ(tags.value(row.field), row.value) << testing::PrintToString(tag);
  }
}

TEST(StoreReadingTest, NamesWhatNoFieldHolds) {
  const std::string jpeg = "\xFF\xD8\xFF\xE0";
  const std::string comment = frame("COMM", "\0eng\0at dawn \n\0"sv);
  const std::string lyrics = frame("USLT", "\0eng\0\nla la\n"sv);
  struct Row {
    std::string frames;
    std::string expected;
  };
  for (const Row& row : std::vector<Row>{
           {comment + lyrics + text("TIT2", "T "), ""},
           {comment + lyrics + comment + lyrics, "COMM, USLT"},
           {frame("COMM", "\0engiTunNORM\0at dawn"sv) + comment, "COMM"},
           {picture(backCover, jpeg) + picture(frontCover, jpeg), "a picture (back cover)"},
           {picture(frontCover, "RIFF") + frame("PRIV", "x"), "a picture (front cover), PRIV"},
       }) {
    const TemporaryFolder folder;
    const auto file = folder.file("track.mp3", track(row.frames));
    EXPECT_EQ(ID3TagEditorStore(true).readWithNotes(file).notes.beyondFields, row.expected);
  }
}

}  // namespace tests
