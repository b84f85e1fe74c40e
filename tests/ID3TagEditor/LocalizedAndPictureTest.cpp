#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

TEST(LocalizedFrames, SeparateTheDescriptionFromTheContent) {
  struct {
    int version;
    std::string body, description, content;
  } const rows[] = {
      {2, "\1eng"s + utf16("d") + "\0\0"s + utf16("hi") + "\0\0"s, "d", "hi"},
      // The last separator counts.
      {3, "\1eng"s + utf16("a") + "\0\0"s + utf16("b") + "\0\0"s + utf16("c"), "a\0\uFEFFb"s, "c"},
      // Without a separator, everything is content: with a big-endian mark, and with a single zero byte.
      {3, "\1eng\xFE\xFF\0d\0\0\xFE\xFF\0h"s, "", "d\0\uFEFFh"s},
      {3, "\0eng"s, "", ""},
      // UTF-8 is only read in v2.4.
      {4, "\3engd\0\0h\xC3\xA9"s, "d", "hé"},
      {3, "\3engd\0\0h\xC3\xA9"s, "d", "hÃ©"},
      {4, "\3eng\0h\xE9"s, "", "Invalid content"},
      {3, "\1eng\xFF\xFE\0\xDC\0\0"s + utf16("hi"), "Invalid content", "hi"}};
  for (const auto& [version, body, description, content] : rows) {
    SCOPED_TRACE(testing::PrintToString(body));
    const std::vector<LocalizedContent> expected{{ID3FrameContentLanguage::eng, description, content}};
    EXPECT_EQ(Reading(version, version == 2 ? "COM" : "COMM", body).content.comments(), expected);
    EXPECT_EQ(Reading(version, version == 2 ? "ULT" : "USLT", body).content.unsynchronizedLyrics(), expected);
  }
}

TEST(LocalizedFrames, AreKeptOncePerLanguageInTheOrderOfTheCodes) {
  TagBytes tag(3);
  for (const auto* language : {"ENG", "zza", "new", "eng", "asm", "XXX", "\xFFng", "zzz", "eng"}) {
    tag.frame("COMM", "\0"s + language + "\0"s + language);
  }
  std::string order;
  for (const auto& comment : Reading(tag.padding(32).characters()).content.comments()) {
    order += std::string(caseName(comment.language)) + ": " + comment.content + ", ";
  }
  EXPECT_EQ(order, "asm: asm, eng: eng, new: new, zza: zza, unknown: zzz, ");
}

TEST(PictureFrames, BeginWhereTheirFieldsOrASignatureIndicate) {
  const std::string exif = "\xFF\xD8\xFF\xE1 a camera's " + jpeg + png;
  struct {
    int version;
    std::string body, expected;
  } const rows[] = {
      {4, "\0image/png\0\x14\0"s + png, "publisherStudioLogotype png" + png},
      {3, "\0image/jpeg\0\3a long description of the cover\0"s + jpeg, "frontCover jpeg" + jpeg},
      // A byte that is not a picture type.
      {3, "\0image/jpeg\0\x15\0"s + jpeg, "other jpeg" + jpeg},
      {2, "\x89PNG", ""},
      // A JPEG from a camera needs undamaged fields in front of it, and then includes everything after them.
      {3, "\0image/jpeg\0\3cover\0"s + exif, "frontCover jpeg" + exif},
      {4, "\2image/jpeg\0\3\0\1\0\0"s + exif, "frontCover jpeg" + exif},
      {3, "\1image/jpg\0\3\xFF\xFEx\0\0\1\0\0"s + exif, "other jpeg" + exif},
      {2, "\0JPG\4\0"s + exif, "backCover jpeg" + exif},
      {3, "\1image/jpeg\0\3\xFF\xFEx\0\0"s + exif, "other png" + png + "frontCover jpeg" + jpeg + png},
      {3, "\0image/jpeg\0\3 "s + exif.substr(0, 9), ""},
      {3, "\0image/jpeg\0\3\0\xFF\xD8\xFF"s, ""},
      // Both formats in one frame, with two types and with one.
      {3, "\0image/jpeg\0\3\0"s + jpeg + png, "other png" + png + "frontCover jpeg" + jpeg + png},
      {2, "\0JPG\3\0"s + jpeg + png, "frontCover png" + png}};
  for (const auto& [version, body, expected] : rows) {
    std::string shown;
    for (const auto& [picture, format, type] :
         Reading(version, version == 2 ? "PIC" : "APIC", body).content.attachedPictures()) {
      shown.append(caseName(type)).append(" ").append(caseName(format));
      shown.append(platform::charactersOf(picture));
    }
    EXPECT_EQ(shown, expected) << testing::PrintToString(body);
  }
}

}  // namespace

}  // namespace tests
