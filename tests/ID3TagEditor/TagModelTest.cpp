#include <algorithm>
#include <set>

#include "ID3TagEditor/model/FrameTables.h"
#include "ID3v2/Identifiers.h"
#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

TEST(TagModel, DescribesEachKindOfContent) {
  const std::string shown = fullTag<ID32v3TagBuilder>().debugDescription() +
                            fullTag<ID32v4TagBuilder>().debugDescription() +
                            ID3Tag(ID3Version::version4).debugDescription();
  for (const auto* part :
       {("\n- genre: Optional(ID3TagEditor.ID3Genre.rock) - Optional(\"Rock\")\n- attachedPicture:\n"
         "frontCover jpeg\n\nbackCover png\n\n- unsynchronisedLyrics:\nlanguage: eng\n"
         "contentDescription: l\ncontent: lyrics\n\nlanguage: ita\n"),
        "\n- recordingDateTime: Date: (14 11 2023) - Time: (22 13)\n- recordingYear: -\n"}) {
    EXPECT_NE(shown.find(part), std::string::npos) << part;
  }
}

// Each text frame of a full tag contains the raw value of its kind.
TEST(TagModel, ReturnsTheTextOfEachKindOfTextFrame) {
  using Reader = ID3TagContentReader;
  const ID3Tag tag = fullTag<ID32v3TagBuilder>();
  const Reader content(tag);
  std::multiset<std::string> read;
  // clang-format off
  for (const auto query : {
      &Reader::title, &Reader::album, &Reader::albumArtist, &Reader::artist, &Reader::composer,
      &Reader::conductor, &Reader::contentGrouping, &Reader::copyright, &Reader::encodedBy,
      &Reader::encoderSettings, &Reader::fileOwner, &Reader::lyricist, &Reader::mixArtist,
      &Reader::publisher, &Reader::subtitle, &Reader::originalFilename, &Reader::initialKey,
      &Reader::iTunesGrouping, &Reader::iTunesMovementName, &Reader::iTunesPodcastCategory,
      &Reader::iTunesPodcastDescription, &Reader::iTunesPodcastID, &Reader::iTunesPodcastKeywords}) {
    read.insert((content.*query)().value_or("none"));
  }
  // clang-format on
  std::multiset<std::string> expected;
  for (const FrameKind& kind : frameKinds) {
    if (kind.content == FrameContent::string) expected.emplace(kind.rawValue);
  }
  EXPECT_EQ(read, expected);
  EXPECT_EQ(content.recordingDayMonth(), (DayMonth{3, 12}));
  EXPECT_EQ(content.recordingHourMinute(), (HourMinute{9, 5}));
}

TEST(TagModel, NamesFramesAsTheStandardsDo) {
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

}  // namespace

}  // namespace tests
