#include <algorithm>
#include <set>

#include "ID3TagEditor/model/FrameTables.h"
#include "ID3v2/Identifiers.h"
#include "tests/ID3TagEditor/Engine.h"

// Bytes in, values out.
namespace tests {

namespace {

TEST(Reading, RecognisesOnlyHeadersOfKnownVersions) {
  for (const int version : {2, 3, 4}) {
    EXPECT_EQ(rawValue(tagIn(TagBytes(version, 0xFF).characters()).value().properties.version), version);
  }
  for (const std::string& mp3 : {""s, "ID3\3"s, audio(), TagBytes(1).characters(), TagBytes(5).characters(),
                                 TagBytes(4, 0, 1).characters(), "id3\3\0\0\0\0\0\0"s}) {
    EXPECT_FALSE(tagIn(mp3)) << testing::PrintToString(mp3.substr(0, 10));
  }
  EXPECT_EQ(engineErrorOf([&] { tagIn("ID3\3\0\0\0\0\0"sv); }), EngineError::corruptedFile);
}

TEST(Reading, ReadsFramesUpToTheFirstThatDoesNotFit) {
  const auto album = [](int version) { return TagBytes(version).text(version == 2 ? "TAL" : "TALB", "A"); };
  const std::string longText(200, 'x');
  struct {
    const char* name;
    TagBytes tag;
    OptionalText album, title;
  } const rows[] = {
      {"padding between frames", album(3).padding(20).text("TIT2", "T").padding(20), "A", "T"},
      {"an unknown frame between frames", album(3).frame("PRIV", "x").text("TIT2", "T").padding(20), "A",
       "T"},
      {"a size in four bytes", TagBytes(3).text("TIT2", longText).padding(20), {}, longText},
      {"a size in three bytes", TagBytes(2).text("TT2", longText).padding(20), {}, longText},
      {"a size with top bits",
       TagBytes(4).raw("TIT2\x80\x80\x81\xC9\0\0\0"s + longText).padding(20),
       {},
       longText},
      {"a frame that fills the tag", TagBytes(3).text("TIT2", longText), {}, {}},
      {"a frame that leaves a byte of the tag", TagBytes(4).text("TIT2", longText).padding(1), {}, longText},
      {"a frame that starts ten bytes before the end", album(2).text("TT2", "T").padding(2), "A", {}},
      {"a frame that starts eleven bytes before the end", album(2).text("TT2", "T").padding(3), "A", "T"},
      {"a size past the end", album(3).frameDeclaring(40, "TIT2", "\0T"s).padding(32), "A", {}},
      {"the greatest size", album(3).frameDeclaring(0xFFFFFFFF, "TIT2", "\0T"s).padding(64), "A", {}},
      {"a repeated frame", album(3).text("TIT2", "one").text("TIT2", "T").padding(20), "A", "T"},
      {"an empty repeated frame", album(3).text("TIT2", "T").frame("TIT2", "").padding(20), "A", "T"}};
  for (const auto& row : rows) {
    const Reading reading(row.tag.characters());
    EXPECT_EQ(reading.content.album(), row.album) << row.name;
    EXPECT_EQ(reading.content.title(), row.title) << row.name;
  }
}

TEST(Reading, DescribesEachKindOfContent) {
  const std::string shown = fullTag(ID3Version::version3).debugDescription() +
                            fullTag(ID3Version::version4).debugDescription() +
                            ID3Tag(ID3Version::version4).debugDescription();
  for (const auto* part :
       {("\n- genre: Optional(ID3TagEditor.ID3Genre.rock) - Optional(\"Rock\")\n- attachedPicture:\n"
         "frontCover jpeg\n\nbackCover png\n\n- unsynchronisedLyrics:\nlanguage: eng\n"
         "contentDescription: l\ncontent: lyrics\n\nlanguage: ita\n"),
        "\n- recordingDateTime: Date: (14 11 2023) - Time: (22 13)\n- recordingYear: -\n"}) {
    EXPECT_NE(shown.find(part), std::string::npos) << part;
  }
}

TEST(Reading, NamesFramesAsTheStandardsDo) {
  const std::set<std::string_view> ofOneVersion{"TOWN", "TDRC", "MVCN"};
  for (const FrameKind& kind : frameKinds) {
    const auto& [two, three, four] = kind.identifiers;
    EXPECT_TRUE(three.empty() || four.empty() || three == four) << three;
    const auto name = three.empty() ? four : three;
    EXPECT_EQ(ID3v2::fourLettersFor(two).value_or(name), name);
    EXPECT_NE(std::ranges::count(ID3v2::identifierPairs, name, &ID3v2::IdentifierPair::four) == 1,
              ofOneVersion.contains(name))
        << name;
  }
}

/// Returns the numbers separated by spaces, with a hyphen for an absent one.
std::string shown(std::initializer_list<OptionalInteger> numbers) {
  std::string text;
  for (const auto& number : numbers)
    text += (text.empty() ? "" : " ") + (number ? std::to_string(*number) : "-");
  return text;
}

/// Returns the values of each frame that this file tests.
std::string shown(const ID3TagContentReader& content) {
  std::string text = content.title().value_or("");
  if (content.beatsPerMinute()) text += shown({content.beatsPerMinute()});
  if (const auto track = content.trackPosition()) text += shown({track->position, track->total});
  if (const auto date = content.recordingDayMonth()) text += shown({date->day, date->month});
  if (const auto time = content.recordingHourMinute()) text += shown({time->hour, time->minute});
  if (const auto time = content.recordingDateTime()) {
    text += shown({time->day, time->month, time->year, time->hour, time->minute});
  }
  if (const auto genre = content.genre()) {
    text += genre->identifier ? caseName(*genre->identifier) : "no genre";
    text += genre->description ? ": " + *genre->description : "";
  }
  for (const auto& list : {content.comments(), content.unsynchronizedLyrics()}) {
    for (const auto& [language, description, value] : list) {
      text.append(caseName(language)).append(" [" + description + "] " + value);
    }
  }
  for (const auto& [picture, format, type] : content.attachedPictures()) {
    text.append(caseName(type)).append(" ").append(caseName(format));
    text.append(platform::charactersOf(picture));
  }
  return text;
}

struct Row {
  int version;
  std::string id, body, expected;
};

void expectEach(const std::vector<Row>& rows) {
  for (const auto& [version, id, body, expected] : rows) {
    EXPECT_EQ(shown(Reading(version, id, body).content), expected) << id << testing::PrintToString(body);
  }
}

/// Reads frames with texts in ISO-8859-1. A row is the text, an arrow and the expected values.
void expectTexts(int version, const std::string& id, const std::vector<std::string>& rows) {
  for (const std::string& row : rows) {
    const std::size_t arrow = row.find(" → ");
    expectEach({{version, id, latin1(row.substr(0, arrow)), row.substr(arrow + " → "sv.size())}});
  }
}

TEST(Reading, DecodesTextsByTheEncodingByteOfTheVersion) {
  // ISO-8859-1, also for encodings that the version has not. Only zero characters are removed from the ends.
  expectEach({{3, "TIT2", "\0\0X\0Y\0\0"s, "X\0Y"s},
              {3, "TIT2", "\0 X\n"s, " X\n"},
              {3, "TIT2", "\3\xC3\xA9", "Ã©"},
              {4, "TIT2", "\2\xE9", "é"},
              {4, "TIT2", "\3\xC3\xA9", "é"},
              // UTF-16 with either mark and without, with surrogates, and with half a unit at the end.
              {3, "TIT2", "\1\xFF\xFEX\0y\0\0\0"s, "Xy"},
              {3, "TIT2", "\1X\0y\0"s, "Xy"},
              {3, "TIT2", "\1\xFE\xFF\xD8\x3D\xDE\x00"s, "😀"},
              {3, "TIT2", "\1\xFF\xFEX\0\x3D\xD8"s, ""},
              {3, "TIT2", "\1\xFF\xFEX\0y"s, "X"},
              {3, "TIT2", "\1\xFF\xFE\xFF\xFEX\0"s, "\uFEFFX"},
              // Invalid UTF-16, but valid UTF-8.
              {3, "TIT2", "\1X\xD8\x80Y"s, "X\u0600Y"}});
  EXPECT_EQ(Reading(3, "TIT2", "\0\0"s).content.title(), "");
  for (const auto* body : {"\3\xFFX", "\3"}) EXPECT_TRUE(Reading(4, "TIT2", body).tag.frames.empty());
}

TEST(Reading, ReadsNumbersAndGenresInTexts) {
  expectTexts(3, "TCON",
              {"(17) → rock", "Rock → no genre: Rock", "Rock (17) → rock", "(81) → cover", "((17) → rock",
               "(82) → no genre: (82)", "(CR)Live → cover: Live", "(foo)Bar → no genre: Bar(foo)",
               " → no genre: ", "x(\xE9t\xE9)y → no genre: y(été)", "(Hip Hop)(17)x → rock: x"});
  expectTexts(3, "TRCK",
              {"3/12 → 3 12", "3 → 3 -", "/12 → 0 12", "x/y → 0 -", "3 / 12 → 0 -", "3/12/5 → 3 12"});
  expectTexts(3, "TBPM", {"+5 → 5", "120.5 → ", " 5 → ", "+ → ", "\xB2 → ", "9223372036854775808 → "});
  expectTexts(3, "TIME", {"12:30 → 12 30", "0945 → 9 45", "12ab → 12 -"});
  expectTexts(2, "TDA", {"1 → - -", "3112 → 31 12"});
  expectTexts(4, "TDRC",
              {"9999 → - - 9999 - -", "-5 → - - -5 - -", "9999.5 → 1 1 1970 2 46",
               "951782400 → 29 2 2000 0 0", "+0X1P14 → 1 1 1970 4 33", "0x-1p14 → - - - - -",
               "0xFFFFp+-1 → - - - - -", "+-10000 → - - - - -", "inf → - - - - -", " → - - - - -"});
  const Reading number(3, "TBPM", "\0x"s);
  EXPECT_EQ(number.tag.frames.at(Name::beatsPerMinute)->id3Identifier, "TBPM");
  EXPECT_EQ(number.tag.frames.at(Name::beatsPerMinute)->size, 12U);
}

TEST(Reading, SeparatesTheDescriptionFromTheLocalizedContent) {
  expectEach(
      {{3, "COMM", "\1eng"s + utf16("d") + "\0\0"s + utf16("hi") + "\0\0"s, "eng [d] hi"},
       {2, "ULT", "\1new"s + utf16("d") + "\0\0"s + utf16("hi") + "\0\0"s, "new [d] hi"},
       // The last separator counts.
       {3, "USLT", "\1asm"s + utf16("a") + "\0\0"s + utf16("b") + "\0\0"s + utf16("c"),
        "asm [a\0\uFEFFb] c"s},
       // Without a separator, everything is content: with a big-endian mark, and with a single zero byte.
       {3, "COMM", "\1eng\xFE\xFF\0d\0\0\xFE\xFF\0h"s, "eng [] d\0\uFEFFh"s},
       {3, "COMM", "\0ENG"s, "unknown [] "},
       // UTF-8 is only read in v2.4.
       {4, "COMM", "\3engd\0\0h\xC3\xA9"s, "eng [d] hé"},
       {3, "COMM", "\3\xFFngd\0\0h\xC3\xA9"s, "unknown [d] hÃ©"},
       {4, "COMM", "\3eng\0h\xE9"s, "eng [] Invalid content"},
       {3, "COMM", "\1eng\xFF\xFE\0\xDC\0\0"s + utf16("hi"), "eng [Invalid content] hi"}});
  // One comment is kept for each language, in the order of the codes.
  TagBytes tag(3);
  for (const auto* language : {"zza", "eng", "XXX", "eng"}) tag.frame("COMM", "\0"s + language);
  EXPECT_EQ(shown(Reading(tag.padding(32).characters()).content), "eng [] zza [] unknown [] ");
}

TEST(Reading, FindsPicturesByTheirFieldsOrASignature) {
  const std::string exif = "\xFF\xD8\xFF\xE1 a camera's " + jpeg + png;
  expectEach({
      {4, "APIC", "\0image/png\0\x14\0"s + png, "publisherStudioLogotype png" + png},
      {3, "APIC", "\0image/jpeg\0\3a long description of the cover\0"s + jpeg, "frontCover jpeg" + jpeg},
      // A byte that is not a picture type.
      {3, "APIC", "\0image/jpeg\0\x15\0"s + jpeg, "other jpeg" + jpeg},
      {2, "PIC", "\x89PNG", ""},
      // A JPEG from a camera needs undamaged fields in front of it, and then includes everything after them.
      {3, "APIC", "\0image/jpeg\0\3cover\0"s + exif, "frontCover jpeg" + exif},
      {4, "APIC", "\2image/jpeg\0\3\0\1\0\0"s + exif, "frontCover jpeg" + exif},
      {3, "APIC", "\1image/jpg\0\3\xFF\xFEx\0\0\1\0\0"s + exif, "other jpeg" + exif},
      {2, "PIC", "\0JPG\4\0"s + exif, "backCover jpeg" + exif},
      {3, "APIC", "\1image/jpeg\0\3\xFF\xFEx\0\0"s + exif,
       "other png" + png + "frontCover jpeg" + jpeg + png},
      {3, "APIC", "\0image/jpeg\0\3 "s + exif.substr(0, 9), ""},
      {3, "APIC", "\0image/jpeg\0\3\0\xFF\xD8\xFF"s, ""},
      // Both formats in one frame, with two types and with one.
      {3, "APIC", "\0image/jpeg\0\3\0"s + jpeg + png, "other png" + png + "frontCover jpeg" + jpeg + png},
      {2, "PIC", "\0JPG\3\0"s + jpeg + png, "frontCover png" + png},
  });
}

}  // namespace

}  // namespace tests
