#include "ID3TagEditor/model/FrameType.h"
#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

TEST(Reading, RecognisesOnlyHeadersOfKnownVersions) {
  for (const ID3Version version : allVersions) {
    const auto tag = tagIn(TagBytes(rawValue(version)).flags(0xFF).characters());
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->properties.version, version);
  }
  for (const std::string& mp3 :
       {""s, "ID3"s, "ID3\3"s, audio(), TagBytes(0).characters(), TagBytes(1).characters(),
        TagBytes(5).characters(), TagBytes(255).characters(), TagBytes(4).revision(1).characters(),
        "id3\3\0\0\0\0\0\0"s}) {
    EXPECT_FALSE(tagIn(mp3)) << testing::PrintToString(mp3.substr(0, 10));
  }
}

TEST(Reading, HoldsTheDeclaredSizeAgainstTheBuffer) {
  const std::string header = "ID3\3\0\0"s;
  for (const std::string& mp3 :
       {"ID3\3\0"s, header + "\0\0\0"s, header + "\0\0\0\x64"s + std::string(50, 'x'),
        header + "\0\0\2\1"s + std::string(256, 'x'),
        TagBytes(3).declaring(250U << 20).padding(1024).characters(),
        header + "\x7F\x7F\x7F\x7F" + std::string(1024, 'x')}) {
    EXPECT_EQ(engineErrorOf([&] { tagIn(mp3); }), EngineError::corruptedFile)
        << testing::PrintToString(mp3.substr(0, 10));
  }
  EXPECT_EQ(tagIn(header + "\0\0\0\0"s)->properties.size, 0U);
  EXPECT_EQ(tagIn(header + "\x80\x80\x80\x81x")->properties.size, 1U);
  EXPECT_EQ(tagIn(header + "\0\0\2\1"s + std::string(257, 'x'))->properties.size, 257U);
}

TEST(Reading, ReadsFrameSizesInTheFormOfTheVersion) {
  struct {
    int version;
    std::string header;
    std::size_t size;
  } const rows[] = {{2, "TT2\0\0\5"s, 11},
                    {2, "TT2\0\2\1"s, 519},
                    {3, "TIT2\0\0\2\1\0\0"s, 523},
                    {4, "TIT2\0\0\2\1\0\0"s, 267},
                    {4, "TIT2\x80\x80\x82\x81\0\0"s, 267},
                    {3, "TIT2\0\0\2\1\xFF\xFF"s, 523}};
  for (const auto& [version, header, size] : rows) {
    SCOPED_TRACE(testing::PrintToString(version) + " " + testing::PrintToString(header));
    const Reading reading(TagBytes(version).raw(header + "\0"s + std::string(1024, 'x')).characters());
    const auto* frame = reading.tag.frame<Text>(Name::title);
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->size, size);
    EXPECT_EQ(frame->id3Identifier, version == 2 ? "TT2" : "TIT2");
    EXPECT_EQ(frame->content(), std::string(size - header.size() - 1, 'x'));
  }
}

TEST(Reading, WalksTheFramesAsFarAsTheyCanBeTrusted) {
  const auto album = [](int version) { return TagBytes(version).text(version == 2 ? "TAL" : "TALB", "A"); };
  const std::string longText(64, 'x');
  struct {
    const char* name;
    TagBytes tag;
    OptionalText album;
    OptionalText title;
  } const rows[] = {
      {"padding behind the last frame", album(3).text("TIT2", "T").padding(4096), "A", "T"},
      {"padding between frames", album(3).padding(20).text("TIT2", "T").padding(20), "A", "T"},
      {"unknown and foreign frames between", album(3).frame("PRIV", "x").text("TDRC", "1").text("TIT2", "T"),
       "A", "T"},
      {"ten bytes of tag", TagBytes(3).text("TIT2", longText).declaring(10), {}, {}},
      {"a frame that fills the tag", TagBytes(3).text("TIT2", longText), {}, {}},
      {"one that leaves a byte", TagBytes(3).text("TIT2", longText).padding(1), {}, longText},
      {"a frame that starts ten bytes before the end", album(2).text("TT2", "T").padding(2), "A", {}},
      {"a frame that starts eleven bytes before", album(2).text("TT2", "T").padding(3), "A", "T"},
      {"a size past the end", album(3).frameDeclaring(40, "TIT2", "\0T"s).padding(32), "A", {}},
      {"the greatest signed size", album(3).frameDeclaring(0x7FFFFFFF, "TIT2", "\0T"s).padding(64), "A", {}},
      {"the greatest size", album(3).frameDeclaring(0xFFFFFFFF, "TIT2", "\0T"s).padding(64), "A", {}},
      {"the greatest size of v2.2", album(2).frameDeclaring(0xFFFFFF, "TT2", "\0T"s).padding(64), "A", {}},
      {"the greatest size of v2.4", album(4).frameDeclaring(0xFFFFFFF, "TIT2", "\0T"s).padding(64), "A", {}},
      {"a repeated frame", album(3).text("TIT2", "one").text("TIT2", "T").padding(20), "A", "T"},
      {"an empty repeated frame", album(3).text("TIT2", "T").frame("TIT2", "").padding(20), "A", "T"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Reading reading(row.tag.characters());
    EXPECT_EQ(reading.content.album(), row.album);
    EXPECT_EQ(reading.content.title(), row.title);
  }
}

TEST(Reading, KnowsEachIdentifierInItsVersionsOnly) {
  EXPECT_FALSE(Reading(4, "TYER", latin1("1977")).content.recordingYear());
  EXPECT_FALSE(Reading(3, "TDRC", latin1("1977")).content.recordingDateTime());
  EXPECT_EQ(Reading(3, "GRP1", "\0G"s).content.iTunesGrouping(), "G");
}

TEST(Reading, SurvivesFramesOfEveryKindThatAreTooShort) {
  for (const auto& row : frameTypeTable) {
    for (const int version : {2, 3, 4}) {
      const std::string id(row.identifiers[static_cast<std::size_t>(version) - 2]);
      if (id.empty()) continue;
      EXPECT_TRUE(Reading(version, id, "").tag.frames.empty()) << id;
      EXPECT_TRUE(Reading(version, id, "\0"s).tag.frames.empty()) << id;
      TagBytes tag(version);
      for (const char fill : {'\0', '\1', '\3', '\xFF'}) {
        for (std::size_t size = 0; size < 18; ++size) tag.frame(id, std::string(size, fill));
        tag.frame(id, fill + "eng"s).frame(id, fill + "\xFF\xD8\xFF\xE0"s).frame(id, "\x89PNG");
      }
      tag.text(version == 2 ? "TAL" : "TALB", "last").padding(32);
      EXPECT_EQ(Reading(tag.characters()).content.album(), "last") << id;
    }
  }
}

}  // namespace

}  // namespace tests
