#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace {

const std::string png = "\x89PNG\r\n\x1A\n picture";

class WritingCommandsTest : public ProgramTest {
 protected:
  const std::string first =
      track(text("TIT2", "Kyrie") + text("TPE1", "Choir") + frame("COMM", "\0eng\0Live"s), 64);
  const std::string second = track(text("TIT2", "Gloria") + text("TRCK", "2") + text("TCON", "Pop"), 64);
  const std::filesystem::path target = folder.path() / "02.mp3";

  WritingCommandsTest() {
    folder.file("source.mp3", track(text("TIT2", "Kyrie") + text("TALB", "Mass") + text("TRCK", "1/2"), 64));
    folder.file("01.mp3", first);
    folder.file("02.mp3", second);
    folder.file("cover", png);
  }
};

std::string report(const std::string& outcome, const std::string& name) {
  const bool isChanged = outcome == "updated  ";
  return outcome + " " + name + "\n\nchanged " + (isChanged ? "1, unchanged 0" : "0, unchanged 1") +
         ", failed 0\n";
}

}  // namespace

TEST_F(WritingCommandsTest, SetTheNamedFields) {
  const std::string rest = "  Artist   Choir\n  Comment  Live\n";
  for (const auto& [options, listing] : std::vector<std::pair<std::string, std::string>>{
           {"--title ' Gloria\n'", "  Title    Gloria\n" + rest},
           {"--title '' --clear ',, comment'", "  Artist  Choir\n"},
           {"--clear title --title --dry-run", "  Title    --dry-run\n" + rest},
           {"--artist A --album-artist B --albumArtist C --artist D",
            "  Title         Kyrie\n  Artist        D\n  Album Artist  C\n  Comment       Live\n"},
           {"--year -5 --disc-number +2 --clear comment,artist --artwork '~/cover'",
            "  Title        Kyrie\n  Year         -5\n  Disc Number  2\n  Artwork      PNG, 16 bytes\n"},
       }) {
    folder.file("01.mp3", first);
    check({{"set " + options + " 01.mp3", report("updated  ", "01.mp3")}, {"read 01.mp3", listing}});
  }
  folder.file("camera", "\xFF\xD8\xFF\xE1 Exif\0\0"s);
  check({{"set --artwork camera 01.mp3", report("updated  ", "01.mp3")},
         {"set --title 'Kyrie ' --artwork camera 01.mp3", report("unchanged", "01.mp3")}});
}

TEST_F(WritingCommandsTest, ReportChangesWithDiff) {
  shell("mkdir a; cp cover a");
  folder.file("other", "\x89PNG\r\n\x1A\n picturf");
  const std::string verse(40, 'v');
  const auto change = [](const std::string& options, const std::string& lines) -> CommandLine {
    return {"set --diff --paths ./01.mp3 a/no.mp3 " + options,
            "updated   ./01.mp3\n" + lines + "\nchanged 1, unchanged 0, failed 1\n",
            "failed    a/no.mp3: no.mp3 could not be read.", 2};
  };
  check({
      change("--title Gloria --clear comment --track-number 2",
             "    - Title         Kyrie\n    + Title         Gloria\n    - Comment       Live\n"
             "    + Track Number  2\n"),
      change("--title 'a\x1B\xC2\x9B' --artwork a/cover --lyrics '" + verse + "\u202E\n" + verse + "'",
             "    - Title         Gloria\n    + Title         a\\x1b\\u009b\n    + Lyrics        " + verse +
                 "\\u202e…\n    + Artwork       PNG, 16 bytes\n"),
      change("--artwork other --lyrics '" + verse + "\u202E\n" + verse + verse + "w'",
             "    - Lyrics        …" + verse.substr(20) + "\n    + Lyrics        …" + verse.substr(20) +
                 verse.substr(1) +
                 "…\n    - Artwork       PNG, 16 bytes, 021b49bb\n"
                 "    + Artwork       PNG, 16 bytes, 9b121801\n"),
  });
}

TEST_F(WritingCommandsTest, TakeAPictureFromAPipe) {
  shell("mkfifo pipe; (head -c 10 cover; sleep 0.3; tail -c +11 cover) >pipe &");
  check({{"set --artwork pipe 01.mp3", report("updated  ", "01.mp3")},
         {"read --table --fields artwork 01.mp3", "01.mp3\tPNG, 16 bytes\n"}});
}

TEST_F(WritingCommandsTest, RefuseABadLineBeforeAnyFileIsTouched) {
  shell("printf GIF89a >gif; : >empty; mkfifo pipe");
  const std::string noField = ". Run 'quillmark fields' for the list.";
  const std::string noPicture = " (expected a JPEG or PNG).";
  const std::string before = stateOf(folder.path() / "01.mp3");
  check({
      {"set --clear , 01.mp3", "", "set needs at least one field, e.g. --artist \"Väskelund\"."},
      {"set --year 1977.0 01.mp3", "", "--year expects a number, got '1977.0'."},
      {"set --trackNumber ' 1' --bpm '' 01.mp3", "", "--trackNumber expects a number, got ' 1'."},
      {"set --year 9223372036854775808 01.mp3", "", "--year expects a number, got '9223372036854775808'."},
      {"set --title A --clear 'title, Mood ,x' 01.mp3", "", "Unknown field 'Mood'" + noField},
      {"set --title A\xFF 01.mp3", "", "--title expects text in UTF-8."},
      {"set --clear ' \x80' 01.mp3", "", "Unknown field ' \x80'" + noField},
      {"set --artwork gif 01.mp3", "", "Could not read artwork at gif" + noPicture},
      {"set --artwork empty 01.mp3", "", "Could not read artwork at empty" + noPicture},
      {"set --artwork pipe 01.mp3", "", "Could not read artwork at pipe" + noPicture},
      {"set --artwork '~/missing' 01.mp3", "", "Could not read artwork at ~/missing" + noPicture},
      {"set --year x", "", "No files given."},
  });
  EXPECT_TRUE(stateOf(folder.path() / "01.mp3") == before);
}

TEST_F(WritingCommandsTest, ApplyTheSelectedFields) {
  const std::string asBefore = "  Title         Gloria\n  Genre         Pop\n  Track Number  2\n";
  for (const auto& [options, listing] : std::vector<std::pair<std::string, std::string>>{
           {"--dryrun --all=yes",
            "  Title         Gloria\n  Album         Mass\n  Track Number  2\n  Track Total   2\n"},
           {"--all", "  Title         Kyrie\n  Album         Mass\n  Track Number  1\n  Track Total   2\n"},
           {"--all --fields mood --fields ',\talbum,albumArtist\u2003,'",
            "  Title         Gloria\n  Album         Mass\n  Genre         Pop\n  Track Number  2\n"},
           {"--fields ,, --all", asBefore},
           {"--fields genre --from 02.mp3", asBefore},
       }) {
    folder.file("02.mp3", second);
    const std::string before = stateOf(target);
    check({{"apply --from source.mp3 02.mp3 " + options,
            report(listing == asBefore ? "unchanged" : "updated  ", "02.mp3")},
           {"read 02.mp3", listing}});
    EXPECT_EQ(stateOf(target) == before, listing == asBefore);
  }
  folder.file("02.mp3", second);
  const std::string before = stateOf(target);
  const std::string source = stateOf(folder.path() / "source.mp3");
  const std::ptrdiff_t entries = folder.entryCount();
  check({{"apply --from source.mp3 --dry-run --all 02.mp3",
          "would     02.mp3\n\nwould change 1, unchanged 0, failed 0\n"}});
  EXPECT_TRUE(stateOf(target) == before);
  check({{"apply --from source.mp3 02.mp3 missing.mp3 '~/source.mp3' " + target.native(),
          "updated   02.mp3\nunchanged source.mp3\nunchanged 02.mp3\n\nchanged 1, unchanged 2, failed 1\n",
          "failed    missing.mp3: missing.mp3 could not be read.", 2}});
  EXPECT_TRUE(stateOf(folder.path() / "source.mp3") == source);
  EXPECT_EQ(folder.entryCount(), entries);
}

}  // namespace tests
