#include <unordered_set>

#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

TEST(TagModel, DescribesEachKindOfContent) {
  const std::string shown = fullTag<ID32v3TagBuilder>().debugDescription() +
                            fullTag<ID32v4TagBuilder>().debugDescription() +
                            ID3Tag(ID3Version::version4).debugDescription();
  for (const auto* part :
       {"ID3Tag:\n- size: 0\n- version: version3\n- artist: artist\n- composer: composer\n",
        "\n- trackPosition: 3 of 12\n", "\n- recordingDayMonth: 3 12\n- recordingHourMinute: 9 5\n",
        ("\n- genre: Optional(ID3TagEditor.ID3Genre.rock) - Optional(\"Rock\")\n- attachedPicture:\n"
         "frontCover jpeg\n\nbackCover png\n\n- unsynchronisedLyrics:\nlanguage: eng\n"
         "contentDescription: l\ncontent: lyrics\n\nlanguage: ita\n"),
        "\n- recordingDateTime: Date: (14 11 2023) - Time: (22 13)\n- recordingYear: -\n"}) {
    EXPECT_NE(shown.find(part), std::string::npos) << part;
  }
}

TEST(TagModel, TellsNamesApart) {
  const std::vector<Name> names = Name::allCases();
  EXPECT_EQ(names.size(), 31 + 2 * allLanguages.size());
  EXPECT_EQ(std::unordered_set<Name>(names.begin(), names.end()).size(), names.size());
  EXPECT_EQ(names.back().kind(), Name::commentKind);
  EXPECT_EQ(names.back().language(), ID3FrameContentLanguage::unknown);
  const Name picture = Name::attachedPicture(ID3PictureType::backCover);
  EXPECT_EQ(picture.pictureType(), ID3PictureType::backCover);
  EXPECT_FALSE(picture.language() || names.back().pictureType());
}

}  // namespace

}  // namespace tests
