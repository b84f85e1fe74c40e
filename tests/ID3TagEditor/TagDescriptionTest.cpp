#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

TEST(TagDescription, ShowsATagWithEverything) {
  EXPECT_EQ(fullTag<ID32v3TagBuilder>().debugDescription(),
            "ID3Tag:\n- size: 0\n- version: version3\n- artist: artist\n- composer: composer\n"
            "- conductor: conductor\n- contentGrouping: contentGrouping\n- copyright: copyright\n"
            "- encodedBy: encodedBy\n- encoderSettings: encoderSettings\n- fileOwner: fileOwner\n"
            "- lyricist: lyricist\n- mixArtist: mixArtist\n- publisher: publisher\n- subtitle: subtitle\n"
            "- albumArtist: albumArtist\n- title: title\n- trackPosition: 3 of 12\n- discPosition: 1 of 2\n"
            "- album: album\n- recordingDateTime: -\n- recordingYear: 1977\n- recordingDayMonth: 3 12\n"
            "- recordingHourMinute: 9 5\n"
            "- genre: Optional(ID3TagEditor.ID3Genre.rock) - Optional(\"Rock\")\n- attachedPicture:\n"
            "frontCover jpeg\n\nbackCover png\n\n- unsynchronisedLyrics:\nlanguage: eng\n"
            "contentDescription: l\ncontent: lyrics\n\nlanguage: ita\ncontentDescription: l\n"
            "content: lyrics\n\n- comments:\nlanguage: eng\ncontentDescription: c\ncontent: comment\n\n"
            "language: ita\ncontentDescription: c\ncontent: comment\n\n- iTunesGrouping: iTunesGrouping\n"
            "- iTunesMovementIndex: 4\n- iTunesMovementCount: 5\n- iTunesMovementName: iTunesMovementName\n"
            "- iTunesPodcastCategory: iTunesPodcastCategory\n"
            "- iTunesPodcastDescription: iTunesPodcastDescription\n- iTunesPodcastID: iTunesPodcastID\n"
            "- iTunesPodcastKeywords: iTunesPodcastKeywords");
  const std::string empty = ID3Tag(ID3Version::version4).debugDescription();
  EXPECT_NE(empty.find("\n- title: -\n- trackPosition: -\n"), std::string::npos);
  EXPECT_NE(empty.find("\n- attachedPicture:\n- unsynchronisedLyrics:\n- comments:\n"), std::string::npos);
}

}  // namespace

}  // namespace tests
