#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

template <class Builder>
class RoundTrip : public testing::Test {};
using Builders = testing::Types<ID32v2TagBuilder, ID32v3TagBuilder, ID32v4TagBuilder>;
TYPED_TEST_SUITE(RoundTrip, Builders);

TYPED_TEST(RoundTrip, GivesBackWhatWasWritten) {
  ID3Tag tag = fullTag<TypeParam>();
  const Reading reading(charactersOf(Editor().write(tag, shared(audio()))));
  EXPECT_EQ(reading.tag.frames.size(), tag.frames.size());
  EXPECT_EQ(reading.tag.debugDescription(), tag.debugDescription());
  // What the description leaves out.
  EXPECT_EQ(reading.content.originalFilename(), "originalFilename");
  EXPECT_EQ(reading.content.initialKey(), "initialKey");
  EXPECT_EQ(reading.content.beatsPerMinute(), 1);
  EXPECT_EQ(reading.content.lengthInMilliseconds(), 2);
  const bool hasSize = TypeParam::version < ID3Version::version4;
  EXPECT_EQ(reading.content.sizeInBytes(), hasSize ? OptionalInteger(3) : OptionalInteger());
  EXPECT_EQ(reading.content.attachedPictures(), ID3TagContentReader(tag).attachedPictures());
}

TEST(RoundTrip, KeepsTextOfEveryScript) {
  const auto eng = ID3FrameContentLanguage::eng;
  for (const std::string text : {"Dvořák – Größe", "日本語", "😀🎵", "a\tb\nc", "\uFEFFmark", "עברית"}) {
    ID32v3TagBuilder builder;
    builder.title(Text(text)).genre({ID3Genre::rock, text}).comment(eng, {eng, text, text});
    const Reading reading(written(builder.build()));
    EXPECT_EQ(reading.content.title(), text);
    EXPECT_EQ(reading.content.genre()->description, text);
    EXPECT_EQ(reading.content.comments().at(0), (LocalizedContent{eng, text, text}));
  }
}

}  // namespace

}  // namespace tests
