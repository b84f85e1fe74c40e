#include <algorithm>

#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

using Builder = ID32v3TagBuilder;
using Language = ID3FrameContentLanguage;

constexpr std::size_t padding = 2048;

// The tests of the store check the complete bytes of v2.3, the version that the program writes.
TEST(Writing, WritesFramesInOrderWithTheIdentifiersOfTheVersion) {
  // Keep only the printable ASCII characters; some sizes are among them.
  std::string v2 = written(fullTag(ID3Version::version2));
  std::erase_if(v2, [](char character) { return character < ' ' || character > '~'; });
  EXPECT_EQ(
      v2,
      "ID3zTALalbumTP2albumArtistTP1artistTT2titleTCO(17)RockTRK3/12PICJPG a photographPICPNGPNG a drawing"
      "TCMcomposerTP3conductorTT1#contentGroupingTCRcopyrightTENencodedByTSS#encoderSettingsTXTlyricist"
      "TP4mixArtistTPBpublisherTT3subtitleTKEinitialKeyTBP14TPA1/2TOF%originalFilenameTLE20TSI11ULTengllyrics"
      "ULTitallyricsCOMengccommentCOMitaccommentTYE13TDA0312TIM0905");
}

TEST(Writing, WritesTagsThatAreReadUnchanged) {
  for (const ID3Version version : allVersions) {
    ID3Tag tag = fullTag(version);
    // The size of this frame takes three bytes, which each version encodes differently.
    tag.frames[Name::copyright] = std::make_shared<Text>(std::string(70000, 'c'));
    for (const FrameKind& kind : frameKinds) {
      const auto isOfKind = [&](const auto& frame) { return frame.first.kind() == kind.name; };
      EXPECT_NE(kind.identifierIn(version).empty(), std::ranges::any_of(tag.frames, isOfKind))
          << kind.rawValue;
    }
    const Reading reading(charactersOf(Editor().write(tag, bytesFrom(audio()))));
    EXPECT_EQ(reading.tag.frames.size(), tag.frames.size());
    EXPECT_EQ(reading.tag.debugDescription(), tag.debugDescription());
    EXPECT_EQ(reading.content.attachedPictures(), ID3TagContentReader(tag).attachedPictures());
  }
  const Reading reading(written(fullTag(ID3Version::version3)));
#define EXPECT_TEXT(field) EXPECT_EQ(reading.content.field(), #field);
#define EXPECT_NUMBER(field) EXPECT_EQ(reading.content.field(), std::ssize(#field##sv));
  TEXT_FIELDS(EXPECT_TEXT)
  NUMBER_FIELDS(EXPECT_NUMBER)
}

TEST(Writing, WritesTheBodyOfEachKindOfFrame) {
  struct {
    ID3Tag tag;
    std::string id, body;
  } const rows[] = {
      {ID32v4TagBuilder().title(Text("\uFEFFé😀")).build(), "TIT2",
       "\1\xFF\xFE\xFF\xFE\xE9\0\x3D\xD8\x00\xDE\0\0"s},
      {Builder().title(Text("")).build(), "TIT2", "\1\xFF\xFE\0\0"s},
      // Invalid UTF-8, cut off within a character or not, becomes an empty text without a mark.
      {Builder().title(Text("A\xF0\x9F")).build(), "TIT2", "\1\0\0"s},
      {Builder().genre({ID3Genre::rock, "A\xC3"}).build(), "TCON", "\1\0\0"s},
      {Builder().comment(Language::eng, {Language::eng, "\xFF", "x\xC3"}).build(), "COMM", "\1eng\0\0"s},
      {Builder().discPosition({3, 0}).build(), "TPOS", latin1("3/0")},
      {Builder().genre({ID3Genre::remix, {}}).build(), "TCON", latin1("(80)")},
      {Builder().genre({{}, "Jodlé"}).build(), "TCON", latin1("Jodl\xE9")},
      {Builder().genre({ID3Genre::rock, "Рок"}).build(), "TCON",
       "\1" + utf16("(17)") + "\x20\x04\x3E\x04\x3A\x04\0\0"s},
      {Builder().unsynchronisedLyrics(Language::unknown, {Language::unknown, "", "x"}).build(), "USLT",
       "\1XXX\xFF\xFE\0\0\xFF\xFEx\0"s},
  };
  for (const auto& [tag, id, body] : rows) {
    SCOPED_TRACE(id + testing::PrintToString(body));
    const int version = rawValue(tag.properties.version);
    EXPECT_EQ(written(tag), TagBytes(version).frame(id, body).padding(padding).characters());
  }
}

TEST(Writing, RefusesATagWithNothingToWrite) {
  ID3Tag wrongClass(ID3Version::version3);
  wrongClass.frames[Name::title] = std::make_shared<Integer>(1);
  wrongClass.frames[Name::genre] = std::make_shared<Text>("Rock");
  const ID3Tag tags[] = {ID3Tag(ID3Version::version3), wrongClass,
                         Builder().recordingDayMonth({3, {}}).recordingHourMinute({{}, 5}).build()};
  for (const ID3Tag& tag : tags) {
    EXPECT_EQ(engineErrorOf([&] { written(tag); }), EngineError::invalidTagData) << tag.debugDescription();
  }
}

TEST(Writing, RefusesATagThatIsTooLongForItsSizeField) {
  constexpr std::size_t smallestTooBig = (std::size_t{1} << 28) - 10;
  constexpr std::size_t overhead = 10 + 14 + padding;
  constexpr auto front = ID3PictureType::frontCover;
  for (const std::size_t size : {smallestTooBig, smallestTooBig - 1}) {
    ID3FrameAttachedPicture picture(platform::Bytes(size - overhead), front, ID3PictureFormat::jpeg);
    ID3Tag tag = Builder().attachedPicture(front, std::move(picture)).build();
    EXPECT_EQ(engineErrorOf([&] { Editor().write(tag, platform::SharedBytes()); }).has_value(),
              size == smallestTooBig);
    EXPECT_EQ(tag.properties.size, size);
  }
}

TEST(Writing, ReplacesTheTagOfABuffer) {
  ID3Tag tag = Builder().title(Text("A")).build();
  const std::string written =
      TagBytes(3).frame("TIT2", "\1" + utf16("A") + "\0\0"s).padding(padding).characters();
  const std::string tag4 = TagBytes(4).text("TIT2", "old").padding(100).characters();
  const std::string tag5 = TagBytes(5).text("TIT2", "old").characters();
  for (const auto& [before, kept] : {std::pair(tag4, ""s), {tag4 + audio(), audio()}, {tag5, tag5}}) {
    EXPECT_EQ(charactersOf(Editor().write(tag, bytesFrom(before))), written + kept);
  }
  const std::string cut = TagBytes(3).declaring(100) + std::string(99, 'x');
  EXPECT_EQ(engineErrorOf([&] { Editor().write(tag, bytesFrom(cut)); }), EngineError::corruptedFile);
}

}  // namespace

}  // namespace tests
