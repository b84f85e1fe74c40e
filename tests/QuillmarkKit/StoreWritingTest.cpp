#include <gtest/gtest.h>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/store/engine/RawFrames.h"
#include "tests/Files.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;
namespace filesystem = std::filesystem;

namespace {

const ID3TagEditorStore store(true);

std::string narrow(std::string_view id, std::string_view text) {
  return frame(id, "\0"s + std::string(text) + "\0"s);
}
std::string wide(std::string_view id, std::string_view text) {
  return frame(id, "\1" + utf16(text) + "\0\0"s);
}
std::string localized(std::string_view id, std::string_view text) {
  return frame(id, "\1eng" + utf16("") + "\0\0"s + utf16(text));
}
TagSet titleOnly(std::string_view title) {
  TagSet tags;
  tags.title = title;
  return tags;
}

}  // namespace

TEST(StoreWritingTest, WritesAFrameForEachField) {
  const TemporaryFolder folder;
  const auto file = folder.file("track.MP3", audio(300000));
  store.write(everyField(), file);
  const std::string frames =
      wide("TALB", "the album") + wide("TPE2", "the album-artist") + wide("TPE1", "the artist") +
      wide("TIT2", "the title") + narrow("TCON", "the genre") + narrow("TRCK", "1973/1974") +
      frame("APIC", "\0image/jpeg\0\3\0\xFF\xD8\xFF\xE0"s + "cover") + wide("TCOM", "the composer") +
      wide("TPE3", "the conductor") + wide("TIT1", "the grouping") + wide("TCOP", "the copyright") +
      wide("TENC", "the encoded-by") + wide("TOWN", "the file-owner") + wide("TEXT", "the lyricist") +
      wide("TPUB", "the publisher") + wide("TIT3", "the subtitle") + wide("TKEY", "the initial-key") +
      narrow("TBPM", "1972") + narrow("TPOS", "1975/1976") + localized("USLT", "the lyrics") +
      localized("COMM", "the comment") + narrow("TYER", "1971");
  EXPECT_EQ(contentsOf(file), TagBytes(3).raw(frames).padding(2048).characters() + audio(300000));
  EXPECT_EQ(store.read(file), everyField());

  // No frame can contain a total without its number.
  store.write(TagSet().merging(everyField(), {TagField::lyricist, TagField::trackTotal, TagField::discTotal}),
              file);
  EXPECT_EQ(contentsOf(file),
            TagBytes(3).raw(wide("TEXT", "the lyricist")).padding(2048).characters() + audio(300000));
  const auto date = filesystem::last_write_time(file);
  ID3TagEditorStore(false).write(titleOnly("New"), file);
  EXPECT_GT(filesystem::last_write_time(file), date);
}

TEST(StoreWritingTest, CarriesOtherFramesOver) {
  const std::string bytes300 = std::string(150, '\xFF') + std::string(150, '\0');
  const std::string user = frame("TXXX", "\0a\0b"sv);
  const std::string priv = frame("PRIV", bytes300, 0xC0E0);
  const std::string date = text("TDRC", "1977");
  const std::string comment = frame("COMM", "\0deu\0hallo"sv);
  const std::string picture = frame("APIC", "\0image/jpeg\0\4\0\xFF\xD8\xFF\xE0"sv);
  struct Row {
    std::string_view name;
    TagBytes old;
    std::string carried;
  };
  for (const Row& row : std::vector<Row>{
           {"v2.3", TagBytes(3).raw(user + wide("TIT2", "Old") + priv + date + user).padding(99),
            user + priv + date + user},
           {"v2.4", TagBytes(4).text("TIT2", "Old").frame("PRIV", bytes300, 0xC0E0).text("TDRC", "1977"),
            priv + date},
           {"unsynchronised", TagBytes(3, 0x80).raw("CRM0\0\0\0\4\0\0\xFF\0\xE0\xFF\0\0"s + user),
            frame("CRM0", "\xFF\xE0\xFF\0"sv) + user},
           {"extended header", TagBytes(3, 0x40).raw("\0\0\0\6\0\0\0\0\0\0"s + priv), priv},
           {"extended header v2.4", TagBytes(4, 0x40).raw("\0\0\0\6\1\0"s).text("TDRC", "1977"), date},
           {"extended header past the end", TagBytes(3, 0x40).raw("\xFF\xFF\xFF\xFC\0\0"s + user), ""},
           {"v2.2", TagBytes(2).text("TT2", "Old").frame("UFI", "id\0\1"sv), ""},
           {"after padding", TagBytes(3).padding(10).raw(user), ""},
           {"after an invalid identifier", TagBytes(3).raw(priv + frame("BBBb", "b") + user), priv},
           {"after an empty frame", TagBytes(3).raw(priv + frame("BBBB", "") + user), priv},
           {"with a size past the end", TagBytes(3).raw(priv).frameDeclaring(UINT32_MAX - 9, "BBBB", "b"),
            priv},
           {"frames of fields",
            TagBytes(3).raw(wide("TIT2", "Old") + wide("TIT2", "Older") + comment + picture), ""},
       }) {
    SCOPED_TRACE(row.name);
    const TemporaryFolder folder;
    const auto file = folder.file("track.mp3", row.old.characters() + audio());
    store.write(titleOnly("New"), file);
    EXPECT_EQ(contentsOf(file), track(wide("TIT2", "New") + row.carried, row.carried.empty() ? 2048 : 0));
    EXPECT_EQ(folder.entryCount(), 1);
    if (row.carried.empty()) continue;
    store.write(TagSet(), file);
    EXPECT_EQ(contentsOf(file), track(row.carried));
  }
}

TEST(StoreWritingTest, ReplacesTheTargetOfALink) {
  const TemporaryFolder folder;
  const TemporaryFolder elsewhere;
  const std::string priv = frame("PRIV", "p");
  const auto target = elsewhere.file("target", track(wide("TIT2", "Old") + priv));
  const auto direct = folder.path() / "direct";
  const auto link = folder.path() / "link.mp3";
  filesystem::create_symlink(target, direct);
  filesystem::create_symlink("direct", link);
  for (const auto& [tags, frames] :
       {std::pair(titleOnly("New"), wide("TIT2", "New") + priv), std::pair(TagSet(), priv)}) {
    store.write(tags, link);
    EXPECT_EQ(filesystem::read_symlink(link), "direct");
    EXPECT_EQ(filesystem::read_symlink(direct), target);
    EXPECT_EQ(contentsOf(target), track(frames));
    EXPECT_EQ(folder.entryCount() + elsewhere.entryCount(), 3);
  }
}

TEST(StoreWritingTest, LeavesTheFileAloneWhenItFails) {
  const TemporaryFolder folder;
  const auto file = folder.file("track.mp3", track(wide("TIT2", "Old"), 64));
  const FileState before(file);
  EXPECT_EQ(messageOf([&] { store.write(TagSet(), file); }), "track.mp3: nothing would be left in its tag.");
  EXPECT_TRUE(FileState(file) == before);
  EXPECT_EQ(folder.entryCount(), 1);
}

TEST(StoreWritingTest, RefusesFramesThatAreTooBigForATag) {
  const ID3Frame sixteenth{.id = "PRIV", .flags = 0, .payload = platform::Bytes((1U << 24) - 10)};
  EXPECT_EQ(messageOf([&] { ID3Frames::tagData(std::vector(16, sixteenth), 0, "track.mp3"); }),
            "track.mp3: its tag would be larger than 256 MiB, more than an ID3 tag can hold.");
}

}  // namespace tests
