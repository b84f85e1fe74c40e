#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

using Language = ID3FrameContentLanguage;

constexpr std::size_t padding = 2048;

/// The frames of a written tag, one after the other, each as its identifier and the ASCII of its body.
std::string listed(const std::string& tag) {
  const bool isShort = tag[3] == 2;
  const std::size_t headerSize = isShort ? 6 : 10;
  std::string frames;
  for (std::size_t at = 10; tag.at(at) != '\0';) {
    // None of the frames is longer than the last byte of its size tells.
    const auto size = static_cast<std::size_t>(tag[at + (isShort ? 5 : 7)]);
    frames += tag.substr(at, isShort ? 3 : 4) + " ";
    for (const char character : tag.substr(at + headerSize, size)) {
      if (character >= ' ' && character <= '~') frames += character;
    }
    frames += ", ";
    at += headerSize + size;
  }
  return frames;
}

TEST(Writing, PutsEveryFrameInItsPlaceUnderTheIdentifierOfTheVersion) {
  EXPECT_EQ(
      listed(written(fullTag<ID32v2TagBuilder>())),
      "TAL album, TP2 albumArtist, TP1 artist, TT2 title, TCO (17)Rock, TRK 3/12, PIC JPG a photograph, "
      "PIC PNGPNG a drawing, TCM composer, TP3 conductor, TT1 contentGrouping, TCR copyright, "
      "TEN encodedBy, TSS encoderSettings, TXT lyricist, TP4 mixArtist, TPB publisher, TT3 subtitle, "
      "TKE initialKey, TBP 1, TPA 1/2, TOF originalFilename, TLE 2, TSI 3, ULT engllyrics, "
      "ULT itallyrics, COM engccomment, COM itaccomment, TYE 1977, TDA 0312, TIM 0905, ");
  const std::string upToLength =
      "TALB album, TPE2 albumArtist, TPE1 artist, TIT2 title, TCON (17)Rock, TRCK 3/12, "
      "APIC image/jpeg a photograph, APIC image/pngPNG a drawing, TCOM composer, TPE3 conductor, "
      "TIT1 contentGrouping, TCOP copyright, TENC encodedBy, TSSE encoderSettings, TOWN fileOwner, "
      "TEXT lyricist, TPE4 mixArtist, TPUB publisher, TIT3 subtitle, TKEY initialKey, TBPM 1, TPOS 1/2, "
      "TOFN originalFilename, TLEN 2, ";
  const std::string localized = "USLT engllyrics, USLT itallyrics, COMM engccomment, COMM itaccomment, ";
  const std::string iTunes =
      "GRP1 iTunesGrouping, MVNM iTunesMovementName, MVIN 4, MVCN 5, TCAT iTunesPodcastCategory, "
      "TDES iTunesPodcastDescription, TGID iTunesPodcastID, TKWD iTunesPodcastKeywords, ";
  EXPECT_EQ(listed(written(fullTag<ID32v3TagBuilder>())),
            upToLength + "TSIZ 3, " + localized + "TYER 1977, TDAT 0312, TIME 0905, " + iTunes);
  EXPECT_EQ(listed(written(fullTag<ID32v4TagBuilder>())),
            upToLength + localized + "TDRC 1699999980, " + iTunes);
}

template <class Builder>
ID3Tag tagWithGenre(std::size_t bodySize) {
  return Builder().genre({{}, std::string(bodySize - 2, 'g')}).build();
}

TEST(Writing, TellsSizesInTheFormOfTheVersion) {
  struct {
    std::size_t bodySize;
    std::string older, standard, newer;
  } const rows[] = {{7, "TCO\0\0\7"s, "TCON\0\0\0\7\0\0"s, "TCON\0\0\0\7\0\0"s},
                    {127, "TCO\0\0\x7F"s, "TCON\0\0\0\x7F\0\0"s, "TCON\0\0\0\x7F\0\0"s},
                    {128, "TCO\0\0\x80"s, "TCON\0\0\0\x80\0\0"s, "TCON\0\0\1\0\0\0"s},
                    {300, "TCO\0\1\x2C"s, "TCON\0\0\1\x2C\0\0"s, "TCON\0\0\2\x2C\0\0"s},
                    {70000, "TCO\1\x11\x70"s, "TCON\0\1\x11\x70\0\0"s, "TCON\0\4\x22\x70\0\0"s}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bodySize);
    const std::string rest = "\0"s + std::string(row.bodySize - 2, 'g') + std::string(1 + padding, '\0');
    const auto expected = [&](char version, const std::string& header) {
      return "ID3"s + version + "\0\0"s + TagBytes::synchsafe(header.size() + rest.size()) + header + rest;
    };
    EXPECT_EQ(written(tagWithGenre<ID32v2TagBuilder>(row.bodySize)), expected(2, row.older));
    EXPECT_EQ(written(tagWithGenre<ID32v3TagBuilder>(row.bodySize)), expected(3, row.standard));
    EXPECT_EQ(written(tagWithGenre<ID32v4TagBuilder>(row.bodySize)), expected(4, row.newer));
  }
}

TEST(Writing, MakesTheBodyOfEachKindOfFrame) {
  const auto moment = [](RecordingDate date, std::optional<RecordingTime> time) {
    return ID32v4TagBuilder().recordingDateTime(ID3FrameRecordingDateTime({date, time})).build();
  };
  const auto picture = [](auto builder, ID3PictureType type) {
    return builder.attachedPicture(type, {shared(jpeg), type, ID3PictureFormat::jpeg}).build();
  };
  const auto genre = [](std::optional<ID3Genre> identifier, OptionalText description) {
    return ID32v3TagBuilder().genre({identifier, std::move(description)}).build();
  };
  struct {
    ID3Tag tag;
    std::string id;
    std::string body;
  } const rows[] = {
      {ID32v3TagBuilder().title(Text("A")).build(), "TIT2", unicode("A")},
      {ID32v2TagBuilder().title(Text("A")).build(), "TT2", unicode("A")},
      {ID32v4TagBuilder().title(Text("é😀")).build(), "TIT2", "\1\xFF\xFE\xE9\0\x3D\xD8\x00\xDE\0\0"s},
      {ID32v3TagBuilder().title(Text("")).build(), "TIT2", "\1\xFF\xFE\0\0"s},
      {ID32v3TagBuilder().title(Text("1")).title(Text("2")).build(), "TIT2", unicode("2")},
      {ID32v3TagBuilder().beatsPerMinute(Integer(120)).build(), "TBPM", latin1("120")},
      {ID32v3TagBuilder().sizeInBytes(Integer(INT64_MIN)).build(), "TSIZ", latin1("-9223372036854775808")},
      {ID32v3TagBuilder().trackPosition({3, {}}).build(), "TRCK", latin1("3")},
      {ID32v3TagBuilder().discPosition({3, 0}).build(), "TPOS", latin1("3/0")},
      {genre(ID3Genre::remix, {}), "TCON", latin1("(80)")},
      {genre({}, "Jodlé"), "TCON", latin1("Jodl\xE9")},
      {genre({}, {}), "TCON", latin1("")},
      {genre(ID3Genre::rock, "Рок"), "TCON", "\1" + utf16("(17)") + "\x20\x04\x3E\x04\x3A\x04\0\0"s},
      {picture(ID32v3TagBuilder(), ID3PictureType::backCover), "APIC", "\0image/jpeg\0\4\0"s + jpeg},
      {picture(ID32v2TagBuilder(), ID3PictureType::frontCover), "PIC", "\0JPG\3\0"s + jpeg},
      {ID32v3TagBuilder().comment(Language::eng, {Language::eng, "d", "Hi"}).build(), "COMM",
       "\1eng" + utf16("d") + "\0\0"s + utf16("Hi")},
      {ID32v3TagBuilder().unsynchronisedLyrics(Language::unknown, {Language::unknown, "", "x"}).build(),
       "USLT", "\1XXX\xFF\xFE\0\0\xFF\xFEx\0"s},
      {ID32v4TagBuilder().comment(Language::eng, {Language::new_, "", ""}).build(), "COMM",
       "\1new\xFF\xFE\0\0\xFF\xFE"s},
      {moment({2, 1, 1970}, RecordingTime{0, 0}), "TDRC", latin1("86400")},
      {moment({31, 12, 1969}, RecordingTime{23, 59}), "TDRC", latin1("-60")},
      {moment({29, 2, 2000}, RecordingTime{12, 30}), "TDRC", latin1("951827400")},
      {moment({{}, {}, 1977}, RecordingTime{12, 30}), "TDRC", latin1("1977")},
      {moment({29, 2, 2000}, RecordingTime{12, {}}), "TDRC", latin1("2000")},
      {moment({29, 2, 2000}, {}), "TDRC", latin1("2000")}};
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
  const auto recorded = [](RecordingDateTime moment) {
    return ID32v4TagBuilder().recordingDateTime(ID3FrameRecordingDateTime(moment)).build();
  };
  const ID3Tag tags[] = {ID3Tag(ID3Version::version3),
                         wrongClass,
                         ID32v3TagBuilder().recordingYear(Integer(OptionalInteger())).build(),
                         ID32v3TagBuilder().recordingDayMonth({3, {}}).recordingHourMinute({{}, 5}).build(),
                         recorded({}),
                         recorded({RecordingDate{1, 2, {}}, RecordingTime{3, 4}})};
  for (const ID3Tag& tag : tags) {
    EXPECT_EQ(engineErrorOf([&] { written(tag); }), EngineError::invalidTagData) << tag.debugDescription();
  }
}

/// A tag with a picture of that many bytes, everything else being as short as can be.
template <class Builder>
std::optional<EngineError::Case> errorOfWriting(std::size_t pictureSize) {
  const auto type = ID3PictureType::frontCover;
  const platform::SharedBytes picture{platform::Bytes(pictureSize)};
  ID3Tag tag = Builder().attachedPicture(type, {picture, type, ID3PictureFormat::jpeg}).build();
  return engineErrorOf([&] { Editor().write(tag, platform::SharedBytes()); });
}

TEST(Writing, RefusesWhatTheSizeFieldsCannotTell) {
  constexpr std::size_t overhead = 10 + 10 + 14 + padding;
  constexpr std::size_t tagLimit = std::size_t{1} << 28;
  EXPECT_EQ(errorOfWriting<ID32v3TagBuilder>(tagLimit - overhead), EngineError::tagTooBig);
  EXPECT_EQ(errorOfWriting<ID32v3TagBuilder>(tagLimit - overhead - 1), std::nullopt);
  constexpr std::size_t shortFrameLimit = std::size_t{1} << 24;
  EXPECT_EQ(errorOfWriting<ID32v2TagBuilder>(shortFrameLimit - 6), EngineError::tagTooBig);
  EXPECT_EQ(errorOfWriting<ID32v2TagBuilder>(shortFrameLimit - 7), std::nullopt);
}

TEST(Writing, ReplacesTheTagOfABuffer) {
  ID3Tag tag = ID32v3TagBuilder().title(Text("A")).build();
  const std::string written = TagBytes(3).frame("TIT2", unicode("A")).padding(padding).characters();
  const std::string unknownTag = TagBytes(5).text("TIT2", "old").characters();
  const struct {
    std::string before, kept;
  } rows[] = {{"", ""},
              {audio(), audio()},
              {TagBytes(4).text("TIT2", "old").padding(100).characters() + audio(), audio()},
              {TagBytes(2).characters(), ""},
              {unknownTag + audio(), unknownTag + audio()}};
  for (const auto& [before, kept] : rows) {
    SCOPED_TRACE(testing::PrintToString(before.substr(0, 10)));
    EXPECT_EQ(charactersOf(Editor().write(tag, shared(before))), written + kept);
  }
  EXPECT_EQ(tag.properties.size, 2065U);
  const std::string cut = TagBytes(3).declaring(100).characters() + std::string(99, 'x');
  EXPECT_EQ(engineErrorOf([&] { Editor().write(tag, shared(cut)); }), EngineError::corruptedFile);
}

}  // namespace

}  // namespace tests
