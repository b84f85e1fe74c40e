#include <algorithm>
#include <set>

#include "ID3TagEditor/create/Mp3WithID3TagBuilder.h"
#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

using Language = ID3FrameContentLanguage;

constexpr std::size_t padding = 2048;

/// The frames of a written v2.2 tag, one after the other, each as its identifier and the ASCII of its body.
std::string listed(const std::string& tag) {
  std::string frames;
  for (std::size_t at = 10; tag.at(at) != '\0';) {
    // None of the frames is longer than the last byte of its size tells.
    const std::size_t size = static_cast<unsigned char>(tag[at + 5]);
    frames += tag.substr(at, 3) + " ";
    for (const char character : tag.substr(at + 6, size)) {
      if (character >= ' ' && character <= '~') frames += character;
    }
    frames += ", ";
    at += 6 + size;
  }
  return frames;
}

// What stands where in v2.3, the version that the program writes, the tests of its store tell to the byte.
TEST(Writing, PutsEveryFrameInItsPlaceUnderTheIdentifierOfTheVersion) {
  EXPECT_EQ(
      listed(written(fullTag<ID32v2TagBuilder>())),
      "TAL album, TP2 albumArtist, TP1 artist, TT2 title, TCO (17)Rock, TRK 3/12, PIC JPG a photograph, "
      "PIC PNGPNG a drawing, TCM composer, TP3 conductor, TT1 contentGrouping, TCR copyright, "
      "TEN encodedBy, TSS encoderSettings, TXT lyricist, TP4 mixArtist, TPB publisher, TT3 subtitle, "
      "TKE initialKey, TBP 1, TPA 1/2, TOF originalFilename, TLE 2, TSI 3, ULT engllyrics, "
      "ULT itallyrics, COM engccomment, COM itaccomment, TYE 1977, TDA 0312, TIM 0905, ");
}

template <class Builder>
void expectRoundTrip() {
  ID3Tag tag = fullTag<Builder>();
  std::set<FrameName::Kind> kinds;
  for (const auto& frame : tag.frames) kinds.insert(frame.first.kind());
  const auto isKnown = [](const FrameKind& kind) { return !kind.identifierIn(Builder::version).empty(); };
  EXPECT_EQ(std::ssize(kinds), std::ranges::count_if(frameKinds, isKnown)) << "a setter for each kind";
  const Reading reading(charactersOf(Editor().write(tag, bytesFrom(audio()))));
  EXPECT_EQ(reading.tag.frames.size(), tag.frames.size());
  EXPECT_EQ(reading.tag.debugDescription(), tag.debugDescription());
  EXPECT_EQ(reading.content.attachedPictures(), ID3TagContentReader(tag).attachedPictures());
}

TEST(Writing, WritesWhatReadingGivesBack) {
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

TEST(Writing, TellsSizesInTheFormOfTheVersion) {
  struct {
    std::size_t bodySize;
    std::string older, standard, newer;
  } const rows[] = {{128, "TCO\0\0\x80"s, "TCON\0\0\0\x80\0\0"s, "TCON\0\0\1\0\0\0"s},
                    {70000, "TCO\1\x11\x70"s, "TCON\0\1\x11\x70\0\0"s, "TCON\0\4\x22\x70\0\0"s}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bodySize);
    const std::string rest = "\0"s + std::string(row.bodySize - 2, 'g') + std::string(1 + padding, '\0');
    const auto expected = [&](char version, const std::string& header) {
      return "ID3"s + version + "\0\0"s + TagBytes::synchsafe(header.size() + rest.size()) + header + rest;
    };
    const ID3FrameGenre genre{{}, std::string(row.bodySize - 2, 'g')};
    EXPECT_EQ(written(ID32v2TagBuilder().genre(genre).build()), expected(2, row.older));
    EXPECT_EQ(written(ID32v3TagBuilder().genre(genre).build()), expected(3, row.standard));
    EXPECT_EQ(written(ID32v4TagBuilder().genre(genre).build()), expected(4, row.newer));
  }
}

TEST(Writing, MakesTheBodyOfEachKindOfFrame) {
  const auto moment = [](RecordingDate date, std::optional<RecordingTime> time) {
    return ID32v4TagBuilder().recordingDateTime(ID3FrameRecordingDateTime({date, time})).build();
  };
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
      // What is no UTF-8, cut off in a character or not, becomes an empty text without a mark.
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
      {moment({31, 12, 1969}, RecordingTime{23, 59}), "TDRC", latin1("-60")},
      {moment({29, 2, 2000}, RecordingTime{12, 30}), "TDRC", latin1("951827400")},
      {moment({{}, {}, 1977}, RecordingTime{12, 30}), "TDRC", latin1("1977")},
  };
  for (const auto& [tag, id, body] : rows) {
    SCOPED_TRACE(id + testing::PrintToString(body));
    const int version = rawValue(tag.properties.version);
    EXPECT_EQ(written(tag), TagBytes(version).frame(id, body).padding(padding).characters());
  }
}

TEST(Writing, RefusesATagWithoutAnythingToWrite) {
  ID3Tag wrongClass(ID3Version::version3);
  wrongClass.frames[Name::title] = std::make_shared<Integer>(1);
  wrongClass.frames[Name::genre] = std::make_shared<Text>("Rock");
  const ID3Tag tags[] = {
      ID3Tag(ID3Version::version3), wrongClass,
      ID32v3TagBuilder().recordingDayMonth({3, {}}).recordingHourMinute({{}, 5}).build(),
      ID32v4TagBuilder()
          .recordingDateTime(ID3FrameRecordingDateTime({RecordingDate{1, 2, {}}, RecordingTime{3, 4}}))
          .build()};
  for (const ID3Tag& tag : tags) {
    EXPECT_EQ(engineErrorOf([&] { written(tag); }), EngineError::invalidTagData) << tag.debugDescription();
  }
}

TEST(Writing, RefusesWhatASizeFieldCannotTell) {
  constexpr std::size_t tagLimit = std::size_t{1} << 28;
  constexpr std::size_t frameLimit = std::size_t{1} << 24;
  constexpr std::size_t overhead = 10 + 14 + padding;
  constexpr auto front = ID3PictureType::frontCover;
  struct {
    std::size_t pictureSize, size;
    ID3Version version;
    std::optional<EngineError::Case> error;
  } const rows[] = {
      {frameLimit - 6, 0, ID3Version::version2, EngineError::tagTooBig},
      {frameLimit - 7, frameLimit - 7 + 12 + padding, ID3Version::version2, {}},
      {tagLimit - 10 - overhead, tagLimit - 10, ID3Version::version3, EngineError::tagTooBig},
      {tagLimit - 11 - overhead, tagLimit - 11, ID3Version::version3, {}},
      {tagLimit, tagLimit + overhead, ID3Version::version4, EngineError::tagTooBig},
  };
  for (const auto& [pictureSize, size, version, error] : rows) {
    const platform::SharedBytes picture{platform::Bytes(pictureSize)};
    ID3Tag tag(version);
    tag.frames[Name::attachedPicture(front)] =
        std::make_shared<ID3FrameAttachedPicture>(picture, front, ID3PictureFormat::jpeg);
    EXPECT_EQ(engineErrorOf([&] { Editor().write(tag, platform::SharedBytes()); }), error);
    EXPECT_EQ(tag.properties.size, size) << caseName(version);
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

  // A caller's current tag need not be that of the bytes.
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
