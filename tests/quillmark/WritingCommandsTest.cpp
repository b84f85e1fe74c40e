#include "tests/Program.h"

namespace tests {

const std::string png = "\x89PNG\r\n\x1A\n picture";
const std::string updated = "updated   01.mp3\n\nchanged 1, unchanged 0, failed 0\n";

class WritingCommandsTest : public ProgramTest {
 protected:
  const std::string old = track(text("TIT2", "Gloria") + text("TRCK", "2") + text("TCON", "Pop"), 64);
  const std::filesystem::path target = folder.file("01.mp3", old);

  WritingCommandsTest() {
    folder.file("source.mp3", track(text("TIT2", "Kyrie") + text("TALB", "Mass") + text("TRCK", "1/2"), 64));
    folder.file("cover", png);
  }
};

TEST_F(WritingCommandsTest, ChangeTheSelectedFields) {
  folder.file("camera", "\xFF\xD8\xFF\xE1 Exif\0\0"s);
  const std::string rest = "  Genre         Pop\n  Track Number  2\n";
  const std::string gloria = "  Title         Gloria\n";
  const std::string mass = "  Album         Mass\n";
  for (const auto& [words, listing] : std::vector<std::pair<std::string, std::string>>{
           {"set --title ' Kyrie\n'", "  Title         Kyrie\n" + rest},
           {"set --title '' --clear ',, genre'", "  Track Number  2\n"},
           {"set --clear title --title --dry-run", "  Title         --dry-run\n" + rest},
           {"set --artist A --album-artist B --albumArtist C --artist D",
            gloria + "  Artist        D\n  Album Artist  C\n" + rest},
           {"set --year -5 --disc-number +2 --clear genre,track-number --artwork '~/cover'",
            "  Title        Gloria\n  Year         -5\n  Disc Number  2\n  Artwork      PNG, 16 bytes\n"},
           {"set --artwork camera", gloria + rest + "  Artwork       JPEG, 11 bytes\n"},
           {"set --title 'Gloria ' --clear artwork", gloria + rest},
           {"apply --from source.mp3 --dryrun --all=yes",
            gloria + mass + "  Track Number  2\n  Track Total   2\n"},
           {"apply --from source.mp3 --all",
            "  Title         Kyrie\n" + mass + "  Track Number  1\n  Track Total   2\n"},
           {"apply --from source.mp3 --all --fields mood --fields ',\t-album-,album--Artist\u2003,'",
            gloria + mass + rest},
           {"apply --from source.mp3 --fields ,, --all", gloria + rest},
           {"apply --from source.mp3 --fields genre --from 01.mp3", gloria + rest},
           {"apply --from source.mp3 --dry-run --all", gloria + rest},
       }) {
    folder.file("01.mp3", old);
    const std::string before = stateOf(target);
    const bool isSame = listing == gloria + rest;
    const std::string report = words.find("--dry-run --all") != std::string::npos
                                   ? "would     01.mp3\n\nwould change 1, unchanged 0, failed 0\n"
                               : isSame ? "unchanged 01.mp3\n\nchanged 0, unchanged 1, failed 0\n"
                                        : updated;
    check({{words + " 01.mp3", report}, {"read 01.mp3", listing}});
    EXPECT_EQ(stateOf(target) == before, isSame);
  }
  const std::string source = stateOf(folder.path() / "source.mp3");
  check({{"apply --from source.mp3 01.mp3 missing.mp3 '~/source.mp3' " + target.native(),
          "updated   01.mp3\nunchanged source.mp3\nunchanged 01.mp3\n\nchanged 1, unchanged 2, failed 1\n",
          "failed    missing.mp3: missing.mp3 could not be read.", 2}});
  EXPECT_TRUE(stateOf(folder.path() / "source.mp3") == source);
  EXPECT_EQ(folder.entryCount(), 4);
  shell("mkfifo pipe; (head -c 10 cover; sleep 0.3; tail -c +11 cover) >pipe &");
  check({{"set --artwork pipe 01.mp3", updated},
         {"set --artwork cover 01.mp3", "unchanged 01.mp3\n\nchanged 0, unchanged 1, failed 0\n"},
         {"read --table --fields artwork 01.mp3", "01.mp3\tPNG, 16 bytes\n"}});
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
      change("--title 'a\x1B\xC2\x9B' --clear genre --artwork a/cover --lyrics '" + verse + "\u202E\n" +
                 verse + "'",
             "    - Title         Gloria\n    + Title         a\\x1b\\u009b\n    - Genre         Pop\n"
             "    + Lyrics        " +
                 verse + "\\u202e…\n    + Artwork       PNG, 16 bytes\n"),
      change("--artwork other --lyrics '" + verse + "\u202E\n" + verse + verse + "w'",
             "    - Lyrics        …" + verse.substr(20) + "\n    + Lyrics        …" + verse.substr(20) +
                 verse.substr(1) +
                 "…\n    - Artwork       PNG, 16 bytes, 021b49bb\n"
                 "    + Artwork       PNG, 16 bytes, 9b121801\n"),
  });
}

TEST_F(WritingCommandsTest, RefuseABadLineBeforeAnyFileIsTouched) {
  shell(
      R"(printf GIF89a >gif; : >empty; mkfifo pipe; printf '\211PNG\r\n\032' >png; printf '\377\330' >jpeg)");
  const std::string noField = ". Run 'quillmark fields' for the list.";
  const std::string noPicture = " (expected a JPEG or PNG).";
  const std::string before = stateOf(target);
  check({
      {"set --clear , 01.mp3", "", "set needs at least one field, e.g. --artist \"Väskelund\"."},
      {"set --year 1977.0 01.mp3", "", "--year expects a number, got '1977.0'."},
      {"set --trackNumber ' 1' --bpm '' 01.mp3", "", "--trackNumber expects a number, got ' 1'."},
      {"set --year 9223372036854775808 01.mp3", "", "--year expects a number, got '9223372036854775808'."},
      {"set --title A --clear 'title, Mood ,x' 01.mp3", "", "Unknown field 'Mood'" + noField},
      {"set --clear ALBUM 01.mp3", "", "Unknown field 'ALBUM'" + noField},
      {"set --clear album-ARTIST 01.mp3", "", "Unknown field 'album-ARTIST'" + noField},
      {"set --clear albumartist 01.mp3", "", "Unknown field 'albumartist'" + noField},
      {"set --clear -- 01.mp3", "", "Unknown field '--'" + noField},
      {"set --title A\xFF 01.mp3", "", "--title expects text in UTF-8."},
      {"set --clear ' \x80' 01.mp3", "", "Unknown field ' \x80'" + noField},
      {"set --artwork gif 01.mp3", "", "Could not read artwork at gif" + noPicture},
      {"set --artwork png 01.mp3", "", "Could not read artwork at png" + noPicture},
      {"set --artwork jpeg 01.mp3", "", "Could not read artwork at jpeg" + noPicture},
      {"set --artwork empty 01.mp3", "", "Could not read artwork at empty" + noPicture},
      {"set --artwork pipe 01.mp3", "", "Could not read artwork at pipe" + noPicture},
      {"set --artwork '~/missing' 01.mp3", "", "Could not read artwork at ~/missing" + noPicture},
      {"set --year x", "", "No files given."},
  });
  EXPECT_TRUE(stateOf(target) == before);
}

}  // namespace tests
