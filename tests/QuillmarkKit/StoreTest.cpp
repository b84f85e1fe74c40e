#include <gtest/gtest.h>

#include <type_traits>

#include "QuillmarkKit/model/TagSetJSON.h"
#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/store/engine/RawFrames.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "QuillmarkKit/transfer/TagClipboard.h"
#include "platform/base/JSON.h"
#include "tests/Files.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;
namespace JSON = platform::JSON;

namespace {

const ID3TagEditorStore store(true);
const std::string jpeg = "\xFF\xD8\xFF\xE0";

std::string picture(char type, std::string_view data) {
  return frame("APIC", "\0image/jpeg\0"s + type + '\0' + std::string(data));
}
/// Returns a text frame as the store writes it.
std::string wide(std::string_view id, std::string_view content) {
  return frame(id, "\1" + utf16(content) + "\0\0"s);
}

class StoreTest : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const TagSet titled = TagSet().merging(everyField(), {TagField::title});
};

}  // namespace

static_assert(std::is_constructible_v<TagApplier, const ID3TagEditorStore&>);
static_assert(!std::is_constructible_v<TagApplier, ID3TagEditorStore>);

TEST(TagSetTest, ContainsAValueForEachField) {
  const TagSet full = everyField();
  for (const TagField field : allTagFields) {
    const TagSet alone = TagSet().merging(full, {field});
    EXPECT_EQ(alone.populatedFields(), TagFields{field});
    EXPECT_EQ(alone.value(field), full.value(field));
    const TagSet cleared = full.merging(TagSet(), {field});
    EXPECT_EQ(cleared.value(field), std::nullopt);
    EXPECT_EQ(cleared.merging(full, {field}), full);
  }
  const std::string document = JSON::print(encodeTagSet(full), JSON::Layout::compact);
  EXPECT_EQ(decodeTagSet(JSON::parse(document), "tags"), full);
}

TEST(TagSetTest, NormalisingTrimsEveryText) {
  TagSet tags = everyField();
  for (const TagField field : allTagFields)
    if (const TextMember text = stringKeyPath(field)) *(tags.*text) += "\u3000\n";
  EXPECT_EQ(tags.normalized(), everyField());
  for (const auto& [text, normal] : std::vector<std::pair<std::string, std::optional<std::string>>>{
           {"\u200B \0\uFEFF"s, "\u200B \0\uFEFF"s},
           {"Gloria\0\0"s, "Gloria"},
           {"Note \0"s, "Note "},
           {"\0 Note"s, " Note"},
           {"   ", {}},
           {"\0\0"s, {}}}) {
    tags.title = text;
    EXPECT_EQ(tags.normalized().title, normal) << testing::PrintToString(text);
  }
}

TEST_F(StoreTest, ReadsOneValueForAFieldAndNamesTheRest) {
  using enum TagField;
  const auto v3 = [](std::string_view frames, std::uint8_t flags = 0) {
    return TagBytes(3, flags).raw(frames);
  };
  const std::string song = frame("COMM", "\0eng\0at dawn \n\0"sv) + frame("USLT", "\0eng\0\nla la\n"sv);
  struct Row {
    TagBytes tag;
    TagField field;
    std::optional<std::string> value;
    std::string beyondFields = {};
  };
  for (const Row& row : std::vector<Row>{
           {v3(text("TIT2", " Kyrie\n\0\0"sv)), title, "Kyrie"},
           {v3(text("TIT2", "  \n")), title, {}},
           {v3("\0\0\0\6\0\0\0\0\0\0"s + text("TIT2", "A"), 0x40), title, "A"},
           {v3(frame("PRIV", "\xFF\0\xE0"sv) + text("TIT2", "A"), 0x80), title, "A", "PRIV"},
           {v3(text("TDRC", "1977")), year, {}},
           {TagBytes(4).text("TDRC", "1977"), year, "1977"},
           {TagBytes(4).text("TDRC", "230385600"), year, "1977"},
           {v3(text("TCON", "(0)")), genre, "Blues"},
           {v3(text("TCON", "(14)")), genre, "R And B"},
           {v3(text("TCON", "(60)")), genre, "Top40"},
           {v3(text("TBPM", "120.5")), bpm, {}},
           {v3(frame("COMM", "\0eng\0hello"sv) + frame("COMM", "\0deu\0hallo"sv)), comment, "hallo", "COMM"},
           {v3(picture('\1', jpeg) + picture('\3', jpeg + "!")), artwork, "JPEG, 5 bytes",
            "a picture (file icon)"},
           {v3(picture('\3', "GIF89a")), artwork, {}, "a picture (front cover)"},
           {v3(song + text("TIT2", "T ")), title, "T"},
           {v3(song + song), comment, "at dawn", "COMM, USLT"},
           {v3(frame("COMM", "\0engiTunNORM\0at dawn"sv) + song), comment, "at dawn", "COMM"},
           {v3(picture('\4', jpeg) + picture('\3', jpeg)), artwork, "JPEG, 4 bytes",
            "a picture (back cover)"},
           {v3(picture('\3', "RIFF") + frame("PRIV", "x")), artwork, {}, "a picture (front cover), PRIV"},
       }) {
    const std::string tag = TagBytes(row.tag).padding(64);
    SCOPED_TRACE(testing::PrintToString(tag));
    const auto source = store.source(folder.file("track.mp3", tag + audio()), TagFields::all, true, true);
    EXPECT_EQ(source.tags.value(row.field), row.value);
    EXPECT_EQ(source.notes.beyondFields, row.beyondFields);
  }
}

TEST_F(StoreTest, WritesAFrameForEachField) {
  const auto file = folder.file("track.MP3", audio(300000));
  store.write(everyField(), file);
  const std::string none = "\1eng" + utf16("") + "\0\0"s;
  const std::string frames =
      wide("TALB", "the album") + wide("TPE2", "the album-artist") + wide("TPE1", "the artist") +
      wide("TIT2", "the title") + text("TCON", "the genre\0"sv) + text("TRCK", "1973/1974\0"sv) +
      picture('\3', jpeg + " cover") + wide("TCOM", "the composer") + wide("TPE3", "the conductor") +
      wide("TIT1", "the grouping") + wide("TCOP", "the copyright") + wide("TENC", "the encoded-by") +
      wide("TOWN", "the file-owner") + wide("TEXT", "the lyricist") + wide("TPUB", "the publisher") +
      wide("TIT3", "the subtitle") + wide("TKEY", "the initial-key") + text("TBPM", "1972\0"sv) +
      text("TPOS", "1975/1976\0"sv) + frame("USLT", none + utf16("the lyrics")) +
      frame("COMM", none + utf16("the comment")) + text("TYER", "1971\0"sv);
  const auto mp3 = [](std::string_view written) {
    return TagBytes(3).raw(written).padding(2048).characters() + audio(300000);
  };
  EXPECT_EQ(contentsOf(file), mp3(frames));
  EXPECT_EQ(store.read(file), everyField());

  // No frame can contain a total without its number.
  store.write(TagSet().merging(everyField(), {TagField::lyricist, TagField::trackTotal, TagField::discTotal}),
              file);
  EXPECT_EQ(contentsOf(file), mp3(wide("TEXT", "the lyricist")));
  const auto date = std::filesystem::last_write_time(file);
  ID3TagEditorStore(false).write(titled, file);
  EXPECT_GT(std::filesystem::last_write_time(file), date);
}

TEST_F(StoreTest, CarriesOtherFramesOver) {
  const TemporaryFolder elsewhere;
  const auto target = elsewhere.path() / "target";
  const auto file = folder.path() / "track.mp3";
  std::filesystem::create_symlink(target, folder.path() / "direct");
  std::filesystem::create_symlink("direct", file);
  const std::string bytes300 = std::string(150, '\xFF') + std::string(150, '\0');
  const std::string user = frame("TXXX", "\0a\0b"sv);
  const std::string priv = frame("PRIV", bytes300, 0xC0E0);
  const std::string date = text("TDRC", "1977");
  for (const auto& [old, carried] : std::vector<std::pair<TagBytes, std::string>>{
           {TagBytes(3).raw(user + wide("TIT2", "O") + priv + date + user).padding(99),
            user + priv + date + user},
           {TagBytes(4).text("TIT2", "O").frame("PRIV", bytes300, 0xC0E0).text("TDRC", "1977"), priv + date},
           {TagBytes(3, 0x80).raw("CRM0\0\0\0\4\0\0\xFF\0\xE0\xFF\0\0"s + user),
            frame("CRM0", "\xFF\xE0\xFF\0"sv) + user},
           // Extended headers, of which one goes past the end.
           {TagBytes(3, 0x40).raw("\0\0\0\6\0\0\0\0\0\0"s + priv), priv},
           {TagBytes(4, 0x40).raw("\0\0\0\6\1\0"s).text("TDRC", "1977"), date},
           {TagBytes(3, 0x40).raw("\xFF\xFF\xFF\xFC\0\0"s + user), ""},
           // Frames of another version, after padding, and after what is no frame.
           {TagBytes(2).text("TT2", "Old").frame("UFI", "id\0\1"sv), ""},
           {TagBytes(3).padding(10).raw(user), ""},
           {TagBytes(3).raw(priv + frame("BBBb", "b") + user), priv},
           {TagBytes(3).raw(priv + frame("BBBB", "") + user), priv},
           {TagBytes(3).raw(priv).frameDeclaring(UINT32_MAX - 9, "BBBB", "b"), priv},
           // Frames of fields.
           {TagBytes(3).raw(wide("TIT2", "O") + wide("TIT2", "P") + frame("COMM", "\0deu\0h"sv) +
                            picture('\4', jpeg)),
            ""},
       }) {
    elsewhere.file("target", old.characters() + audio());
    store.write(titled, file);
    EXPECT_EQ(contentsOf(target), track(wide("TIT2", "the title") + carried, carried.empty() ? 2048 : 0))
        << testing::PrintToString(old.characters());
    if (!carried.empty()) {
      store.write(TagSet(), file);
      EXPECT_EQ(contentsOf(target), track(carried));
    }
    EXPECT_EQ(std::filesystem::read_symlink(file), "direct");
    EXPECT_EQ(std::filesystem::read_symlink(folder.path() / "direct"), target);
    EXPECT_EQ(folder.entryCount() + elsewhere.entryCount(), 3);
  }
}

TEST_F(StoreTest, LeavesTheFileAloneWhenItFails) {
  const auto file = folder.file("track.mp3", track(wide("TIT2", "Old"), 64));
  const std::string before = stateOf(file);
  EXPECT_EQ(messageOf([&] { store.write(TagSet(), file); }), "track.mp3: nothing would be left in its tag.");
  EXPECT_TRUE(stateOf(file) == before);
  EXPECT_EQ(folder.entryCount(), 1);
  const ID3Frame sixteenth{.id = "PRIV", .flags = 0, .payload = platform::Bytes((1U << 24) - 10)};
  EXPECT_EQ(messageOf([&] { ID3Frames::tagData(std::vector(16, sixteenth), 0, "track.mp3"); }),
            "track.mp3: its tag would be larger than 256 MiB, more than an ID3 tag can hold.");
}

TEST_F(StoreTest, ReadsAndWritesRawFrames) {
  const std::string carried = frame("PRIV", "x\0\xFF\xE0"s, 0x4003) + frame("TXXX", std::string(200, 't'));
  const auto file = folder.file("source.mp3", track(carried + text("TIT2", "Kyrie")));
  const auto target = folder.file("target.mp3", track(text("TIT2", "Gloria"), 100));
  const auto frames = ID3Frames::unmanagedFrames(file);
  ID3Frames::append({}, target);
  EXPECT_EQ(contentsOf(target), track(text("TIT2", "Gloria"), 100));
  ID3Frames::append(frames, target);
  EXPECT_EQ(contentsOf(target), track(text("TIT2", "Gloria") + carried));
  ID3Frames::write(frames, file, target);
  EXPECT_EQ(contentsOf(target), track(carried));
  folder.file("target.mp3", audio());
  EXPECT_EQ(messageOf([&] { ID3Frames::append(frames, target); }),
            "target.mp3: the ID3 tag could not be read back after writing.");
  EXPECT_EQ(contentsOf(target), audio());
  const std::string headerPastTheEnd = TagBytes(3, 0x40).raw("\0\0\0\1"s);
  EXPECT_FALSE(ID3Frames::parse(bytesFrom(headerPastTheEnd)));
}

TEST_F(StoreTest, ReturnsAResultForEachFileAndContinues) {
  const auto source = folder.file("a.mp3", track(text("TALB", "Mass"), 64));
  const auto target = folder.file("b.mp3", audio());
  const TagApplier applier(store);
  const auto results = applier.copy(source, {"no.mp3", source, target}, TagFields::all, false);
  EXPECT_EQ(std::pair(TagApplier::updatedCount(results), TagApplier::unchangedCount(results)),
            std::pair(1UL, 1UL));
  EXPECT_EQ(store.read(target).album, "Mass");
  const auto failures = TagApplier::failures(results);
  ASSERT_EQ(failures.size(), 1U);
  const std::string unread = "no.mp3 could not be read.";
  EXPECT_EQ(messageOf([&] { std::rethrow_exception(failures[0].second); }), unread);
  EXPECT_EQ(messageOf([&] { applier.copy("no.mp3", {target}, TagFields::all, false); }), unread);
  // The applier still exists, but no hidden folder is left.
  EXPECT_EQ(folder.entryCount(), 2);
}

TEST_F(StoreTest, RefusesTextThatIsNotUTF8) {
  platform::Pasteboard pasteboard(folder.path());
  TagSet tags;
  tags.title = "\xFF";
  EXPECT_THROW(TagClipboard::copy(tags, pasteboard), TagClipboard::EncodingError);
  EXPECT_EQ(folder.entryCount(), 0);
}

}  // namespace tests
