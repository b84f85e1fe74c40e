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
}

TEST(TagDescription, ShowsWhatIsAbsent) {
  ID3Tag tag(ID3Version::version4);
  const auto shows = [&](const std::string& line) {
    return tag.debugDescription().find("\n" + line + "\n") != std::string::npos;
  };
  for (const auto* line :
       {"- title: -", "- trackPosition: -", "- recordingDateTime: -", "- genre: -", "- recordingYear: -",
        "- attachedPicture:\n- unsynchronisedLyrics:\n- comments:"}) {
    EXPECT_TRUE(shows(line)) << line;
  }
  tag.frames[Name::title] = std::make_shared<Integer>(1);
  tag.frames[Name::recordingYear] = std::make_shared<Integer>(OptionalInteger());
  tag.frames[Name::recordingDayMonth] = std::make_shared<ID3FrameRecordingDayMonth>(std::nullopt, 5);
  tag.frames[Name::discPosition] = std::make_shared<ID3FramePartOfTotal>(3, std::nullopt);
  tag.frames[Name::genre] = std::make_shared<ID3FrameGenre>(std::nullopt, "a\"\\\n");
  tag.frames[Name::recordingDateTime] =
      std::make_shared<ID3FrameRecordingDateTime>(RecordingDateTime{{}, RecordingTime{22, {}}});
  for (const auto* line :
       {"- title: -", "- recordingYear: 0", "- recordingDayMonth: 0 5", "- discPosition: 3 of -",
        R"(- genre: nil - Optional("a\"\\\n"))", "- recordingDateTime: Date: (-) - Time: (22 0)"}) {
    EXPECT_TRUE(shows(line)) << line;
  }
}

}  // namespace

}  // namespace tests
