#include <algorithm>
#include <set>

#include "ID3TagEditor/create/MP3Writing.h"
#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

using Language = ID3FrameContentLanguage;

constexpr std::size_t padding = 2048;

// The tests of the store check the complete bytes of v2.3, the version that the program writes.
TEST(Writing, WritesFramesInOrderWithTheIdentifiersOfTheVersion) {
  // Keep only the printable ASCII characters; some sizes are among them.
  std::string v2 = written(fullTag<ID32v2TagBuilder>());
  std::erase_if(v2, [](char character) { return character < ' ' || character > '~'; });
  EXPECT_EQ(
      v2,
      "ID3yTALalbumTP2albumArtistTP1artistTT2titleTCO(17)RockTRK3/12PICJPG a photographPICPNGPNG a drawing"
      "TCMcomposerTP3conductorTT1#contentGroupingTCRcopyrightTENencodedByTSS#encoderSettingsTXTlyricist"
      "TP4mixArtistTPBpublisherTT3subtitleTKEinitialKeyTBP1TPA1/2TOF%originalFilenameTLE2TSI3ULTengllyrics"
      "ULTitallyricsCOMengccommentCOMitaccommentTYE1977TDA0312TIM0905");
}

template <class Builder>
void expectRoundTrip() {
  ID3Tag tag = fullTag<Builder>();
  // The size of this frame takes three bytes, which each version encodes differently.
  tag.frames[Name::copyright] = std::make_shared<Text>(std::string(70000, 'c'));
  std::set<FrameName::Kind> kinds;
  for (const auto& frame : tag.frames) kinds.insert(frame.first.kind());
  const auto isKnown = [](const FrameKind& kind) { return !kind.identifierIn(Builder::version).empty(); };
  EXPECT_EQ(std::ssize(kinds), std::ranges::count_if(frameKinds, isKnown)) << "a setter for each kind";
  const Reading reading(charactersOf(Editor().write(tag, bytesFrom(audio()))));
  EXPECT_EQ(reading.tag.frames.size(), tag.frames.size());
  EXPECT_EQ(reading.tag.debugDescription(), tag.debugDescription());
  EXPECT_EQ(reading.content.attachedPictures(), ID3TagContentReader(tag).attachedPictures());
}

TEST(Writing, WritesTagsThatAreReadUnchanged) {
  expectRoundTrip<ID32v2TagBuilder>();
  expectRoundTrip<ID32v3TagBuilder>();
  expectRoundTrip<ID32v4TagBuilder>();
  for (const std::string text : {"Dvořák – Größe", "日本語", "😀🎵", "a\tb\nc", "\uFEFFmark", "עברית"}) {
    ID32v3TagBuilder builder;
    builder.title(Text(text))
        .genre({ID3Genre::rock, text})
        .comment(Language::eng, {Language::eng, text, text});
    const Reading reading(written(builder.build()));
    EXPECT_EQ(reading.content.title(), text);
    EXPECT_EQ(reading.content.genre()->description, text);
    EXPECT_EQ(reading.content.comments().at(0), (LocalizedContent{Language::eng, text, text}));
  }
}

TEST(Writing, WritesTheBodyOfEachKindOfFrame) {
  const auto genre = [](std::optional<ID3Genre> identifier, OptionalText description) {
    return ID32v3TagBuilder().genre({identifier, std::move(description)}).build();
  };
  struct {
    ID3Tag tag;
    std::string id;
    std::string body;
  } const rows[] = {
      {ID32v4TagBuilder().title(Text("é😀")).build(), "TIT2", "\1\xFF\xFE\xE9\0\x3D\xD8\x00\xDE\0\0"s},
      {ID32v3TagBuilder().title(Text("")).build(), "TIT2", "\1\xFF\xFE\0\0"s},
      // Invalid UTF-8, cut off within a character or not, becomes an empty text without a mark.
      {ID32v3TagBuilder().title(Text("A\xF0\x9F")).build(), "TIT2", "\1\0\0"s},
      {genre(ID3Genre::rock, "A\xC3"), "TCON", "\1\0\0"s},
      {ID32v3TagBuilder().comment(Language::eng, {Language::eng, "\xFF", "x\xC3"}).build(), "COMM",
       "\1eng\0\0"s},
      {ID32v3TagBuilder().discPosition({3, 0}).build(), "TPOS", latin1("3/0")},
      {genre(ID3Genre::remix, {}), "TCON", latin1("(80)")},
      {genre({}, "Jodlé"), "TCON", latin1("Jodl\xE9")},
      {genre(ID3Genre::rock, "Рок"), "TCON", "\1" + utf16("(17)") + "\x20\x04\x3E\x04\x3A\x04\0\0"s},
      {ID32v3TagBuilder().unsynchronisedLyrics(Language::unknown, {Language::unknown, "", "x"}).build(),
       "USLT", "\1XXX\xFF\xFE\0\0\xFF\xFEx\0"s},
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
                         ID32v3TagBuilder().recordingDayMonth({3, {}}).recordingHourMinute({{}, 5}).build()};
  for (const ID3Tag& tag : tags) {
    EXPECT_EQ(engineErrorOf([&] { written(tag); }), EngineError::invalidTagData) << tag.debugDescription();
  }
}

TEST(Writing, RefusesATagThatIsTooLongForItsSizeField) {
  constexpr std::size_t tagLimit = std::size_t{1} << 28;
  constexpr std::size_t overhead = 10 + 14 + padding;
  constexpr auto front = ID3PictureType::frontCover;
  struct {
    std::size_t size;
    std::optional<EngineError::Case> error;
  } const rows[] = {
      {tagLimit - 10, EngineError::tagTooBig},
      {tagLimit - 11, {}},
  };
  for (const auto& [size, error] : rows) {
    const platform::SharedBytes picture{platform::Bytes(size - overhead)};
    ID3Tag tag(ID3Version::version3);
    tag.frames[Name::attachedPicture(front)] =
        std::make_shared<ID3FrameAttachedPicture>(picture, front, ID3PictureFormat::jpeg);
    EXPECT_EQ(engineErrorOf([&] { Editor().write(tag, platform::SharedBytes()); }), error);
    EXPECT_EQ(tag.properties.size, size);
  }
}

TEST(Writing, ReplacesTheTagOfABuffer) {
  ID3Tag tag = ID32v3TagBuilder().title(Text("A")).build();
  const std::string written =
      TagBytes(3).frame("TIT2", "\1" + utf16("A") + "\0\0"s).padding(padding).characters();
  const std::string unknownTag = TagBytes(5).text("TIT2", "old").characters();
  for (const auto& [before, kept] :
       {std::pair(audio(), audio()),
        {TagBytes(2).characters(), ""},
        {TagBytes(4).text("TIT2", "old").padding(100).characters() + audio(), audio()},
        {unknownTag + audio(), unknownTag + audio()}}) {
    EXPECT_EQ(charactersOf(Editor().write(tag, bytesFrom(before))), written + kept);
  }
  const std::string cut = TagBytes(3).declaring(100) + std::string(99, 'x');
  EXPECT_EQ(engineErrorOf([&] { Editor().write(tag, bytesFrom(cut)); }), EngineError::corruptedFile);

  // The caller can pass another current tag than that of the bytes.
  const ID3TagCreator creator = ID3TagCreatorFactory::make();
  const Mp3WithID3TagBuilder builder(creator);
  const std::optional<ID3Tag> current = tagIn(TagBytes(3).padding(20).characters());
  EXPECT_EQ(charactersOf(builder.build({}, tag, current)), written);
  EXPECT_EQ(charactersOf(builder.build(bytesFrom(audio(30)), tag, current)), written);
  EXPECT_EQ(engineErrorOf([&] { builder.build(bytesFrom(audio(29)), tag, current); }),
            EngineError::corruptedFile);
}

}  // namespace

}  // namespace tests
