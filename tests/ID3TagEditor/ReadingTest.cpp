#include "ID3TagEditor/model/FrameTables.h"
#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

TEST(Reading, RecognisesOnlyHeadersOfKnownVersions) {
  for (const ID3Version version : allVersions) {
    EXPECT_EQ(tagIn(TagBytes(rawValue(version), 0xFF).characters()).value().properties.version, version);
  }
  for (const std::string& mp3 : {""s, "ID3\3"s, audio(), TagBytes(1).characters(), TagBytes(5).characters(),
                                 TagBytes(4, 0, 1).characters(), "id3\3\0\0\0\0\0\0"s}) {
    EXPECT_FALSE(tagIn(mp3)) << testing::PrintToString(mp3.substr(0, 10));
  }
  for (const std::string& mp3 : {"ID3\3\0\0\0\0\0"s, TagBytes(3).padding(256).declaring(257)}) {
    EXPECT_EQ(engineErrorOf([&] { tagIn(mp3); }), EngineError::corruptedFile);
  }
}

TEST(Reading, ReadsFrameSizesInTheFormOfTheVersion) {
  struct {
    int version;
    std::string header;
    std::size_t size;
  } const rows[] = {
      {2, "TT2\0\2\1"s, 513}, {3, "TIT2\0\0\2\1\0\0"s, 513}, {4, "TIT2\x80\x80\x82\x81\0\0"s, 257}};
  for (const auto& [version, header, size] : rows) {
    const Reading reading(TagBytes(version).raw(header + "\0"s + std::string(1024, 'x')).characters());
    EXPECT_EQ(reading.content.title(), std::string(size - 1, 'x'));
  }
}

TEST(Reading, ReadsFramesUpToTheFirstThatDoesNotFit) {
  const auto album = [](int version) { return TagBytes(version).text(version == 2 ? "TAL" : "TALB", "A"); };
  const std::string longText(64, 'x');
  struct {
    const char* name;
    TagBytes tag;
    OptionalText album;
    OptionalText title;
  } const rows[] = {
      {"padding between frames", album(3).padding(20).text("TIT2", "T").padding(20), "A", "T"},
      {"an unknown frame between frames", album(3).frame("PRIV", "x").text("TIT2", "T").padding(20), "A",
       "T"},
      {"a frame that fills the tag", TagBytes(3).text("TIT2", longText), {}, {}},
      {"a frame that leaves a byte of the tag", TagBytes(3).text("TIT2", longText).padding(1), {}, longText},
      {"a frame that starts ten bytes before the end", album(2).text("TT2", "T").padding(2), "A", {}},
      {"a frame that starts eleven bytes before the end", album(2).text("TT2", "T").padding(3), "A", "T"},
      {"a size past the end", album(3).frameDeclaring(40, "TIT2", "\0T"s).padding(32), "A", {}},
      {"the greatest size", album(3).frameDeclaring(0xFFFFFFFF, "TIT2", "\0T"s).padding(64), "A", {}},
      {"a repeated frame", album(3).text("TIT2", "one").text("TIT2", "T").padding(20), "A", "T"},
      {"an empty repeated frame", album(3).text("TIT2", "T").frame("TIT2", "").padding(20), "A", "T"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Reading reading(row.tag.characters());
    EXPECT_EQ(reading.content.album(), row.album);
    EXPECT_EQ(reading.content.title(), row.title);
  }
}

TEST(Reading, SurvivesFramesOfEveryKindThatAreTooShort) {
  for (const FrameKind& kind : frameKinds) {
    const std::string id(kind.identifierIn(ID3Version::version3));
    if (id.empty()) continue;
    TagBytes tag(3);
    for (const char fill : {'\0', '\1', '\xFF'}) {
      for (std::size_t size = 0; size < 18; ++size) tag.frame(id, std::string(size, fill));
    }
    EXPECT_EQ(Reading(tag.text("TALB", "last").padding(32).characters()).content.album(), "last") << id;
  }
}

}  // namespace

}  // namespace tests
