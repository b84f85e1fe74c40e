#include <gtest/gtest.h>

#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "QuillmarkKit/store/MP3Check.h"
#include "tests/Samples.h"
#include "tests/TemporaryFolder.h"

namespace tests {

using namespace QuillmarkKit;

namespace {

std::string picture(char type, std::string_view data, std::string_view mimeType = "image/jpeg") {
  return frame("APIC", "\0"s + std::string(mimeType) + '\0' + type + '\0' + std::string(data));
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
  const auto v3 = [](std::string_view frames) { return TagBytes(3).raw(frames); };
  const std::string titleA = text("TIT2", "A");
  for (const Row& row : std::vector<Row>{
           {TagBytes(2).text("TT2", "A").text("TRK", "3/12"), trackTotal, "12"},
           {TagBytes(4).frame("TIT2", "\3\xC3\xA9"), title, "\u00E9"},
           {v3(text("TIT2", " Kyrie\n\0\0"sv)), title, "Kyrie"},
           {v3(text("TIT2", "  \n")), title, {}},
           {v3(frame("TPE1", "") + frame("TPE2", "\0"sv) + titleA), title, "A"},
           {v3(titleA + "TPE1\0\0\x27\x0F\0\0\0B"s), title, "A"},
           {v3(titleA + "TPE1\xFF\xFF\xFF\xFF\0\0\0B"s), title, "A"},
           {v3(titleA + "TXXX\0\0\2\1\0\0"s + std::string(257, 'x')), title, "A"},
           {v3("\0\0\0\6\0\0\0\0\0\0"s + titleA).flags(0x40), title, "A"},
           {v3(frame("PRIV", "\xFF\0\xE0"sv) + titleA).flags(0x80), title, "A"},
           {v3(text("TYER", "1977")), year, "1977"},
           {v3(text("TDRC", "1977")), year, {}},
           {TagBytes(4).text("TYER", "1977"), year, {}},
           {TagBytes(4).text("TDRC", "1977"), year, "1977"},
           {TagBytes(4).text("TDRC", "230385600"), year, "1977"},
           {TagBytes(4).text("TDRC", "1977-05-01"), year, {}},
           {v3(text("TCON", "(0)")), genre, "Blues"},
           {v3(text("TCON", "(14)")), genre, "R And B"},
           {v3(text("TCON", "(60)")), genre, "Top40"},
           {v3(text("TCON", "(1)Prog")), genre, "Prog"},
           {v3(text("TCON", "choral music")), genre, "choral music"},
           {v3(text("TRCK", "3")), trackNumber, "3"},
           {v3(text("TRCK", "3")), trackTotal, {}},
           {v3(text("TBPM", "120.5")), bpm, {}},
           {v3(frame("COMM", "\0eng\0hello"sv) + frame("COMM", "\0deu\0hallo"sv)), comment, "hallo"},
           {v3(frame("USLT", "\0eng\0sing"sv)), lyrics, "sing"},
           {v3(picture(fileIcon, "\xFF\xD8\xFF\xE0") + picture(frontCover, "\xFF\xD8\xFF\xE0!")), artwork,
            "JPEG, 5 bytes"},
           {v3(picture(backCover, "\x89PNG\r\n\x1A\n", "image/png")), artwork, "PNG, 8 bytes"},
           {v3(picture(frontCover, "GIF89a")), artwork, {}},
           {v3("").padding(500), title, {}},
           {TagBytes(4).revision(1).text("TIT2", "A"), title, {}},
           {TagBytes(5).text("TIT2", "A"), title, {}},
       }) {
    const std::string tag = TagBytes(row.tag).padding(64).characters();
    SCOPED_TRACE(testing::PrintToString(tag.substr(0, tag.size() - 64)));
    const TemporaryFolder folder;
    const TagSet tags = ID3TagEditorStore(true).read(folder.file("track.mp3", tag + audio()));
    EXPECT_EQ(tags.value(row.field), row.value);
  }
}

TEST(MP3CheckTest, TellsFormatsByTheirFirstBytes) {
  for (const std::string_view bytes : {"ID3", "ID3fLaC", "\xFF\xE0-", "\xFF\xFB\x90"}) {
    EXPECT_TRUE(looksLikeMP3(platform::bytesOf(bytes))) << bytes;
  }
  for (const std::string_view bytes : {"", "ID", "id3\3", "\xFF\xFB", "\xFF\xDF\xFF", "-\xFF\xFB\x90"}) {
    EXPECT_FALSE(looksLikeMP3(platform::bytesOf(bytes))) << bytes;
  }
  const std::vector<std::pair<std::string_view, std::optional<std::string>>> formats{
      {"RIFFftypM4A ", "M4A"},
      {"sizeftypM4B ", "MPEG-4"},
      {"sizeftypM4", "MPEG-4"},
      {"sizefty", {}},
      {"FORM", "AIFF"},
      {"fLa", {}},
      {" fLaC", {}},
      {"flac", {}}};
  for (const auto& [bytes, format] : formats) {
    EXPECT_EQ(describeFormat(platform::bytesOf(bytes)), format) << bytes;
  }
}

}  // namespace tests
