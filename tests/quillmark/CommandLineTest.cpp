#include "tests/Program.h"

namespace tests {

using CommandLineTest = ProgramTest;

TEST_F(CommandLineTest, IsAnsweredWithoutTouchingAFile) {
  const std::string usage = run("").output;
  EXPECT_TRUE(
      usage.starts_with("quillmark — read and write ID3 tags on MP3 files.\n\nUSAGE\n  quillmark read"));
  const std::string copyHelp =
      "quillmark copy — put one file's tags on the clipboard.\n\nUSAGE\n  quillmark copy [<options...>] "
      "<file>\n"
      "\nOPTIONS\n  --no-desktop  leave the desktop's clipboard alone\n"
      "  --lossless    keep everything that other programs wrote\n"
      "  --notes       print notes even if there is no terminal\n"
      "  --strict      check the words and all files before the first write\n"
      "  --help        print this text\n"
      "\nEXAMPLE\n  quillmark copy \"01 Kyrie.mp3\"\n";
  const std::string noFiles = "No files given.";
  const std::string isFolder = "/ could not be read: it is a folder.";
  const std::string folderNote = "\nquillmark: note: --recursive takes the MP3 files in and below a folder.";
  const auto note = [](const std::string& text) { return "note: --" + text + "\nquillmark: "; };
  const std::string noField = ". Run 'quillmark fields' for the list.";
  check({
      {"help READ", usage},
      {"--help", usage},
      {"READ", usage, "Unknown command 'READ'.\n"},
      {"read --json --x.mp3", "", noFiles},
      {"copy x.mp3 --help", copyHelp},
      {"read --notes --jsno --all", "",
       note("jsno is no option of read and is ignored; did you mean --json?") +
           note("all is no option of read and is ignored.") + noFiles},
      {"set --title --notes --notes --title=x --dry-run=x --titel=x --albumartist", "",
       note("title=x is no option of set and is ignored; write --title x.") +
           note("dry-run=x is no option of set and is ignored; write --dry-run.") +
           note("titel=x is no option of set and is ignored; did you mean --title?") +
           note("albumartist is no option of set and is ignored; did you mean --album-artist?") + noFiles},
      {"set --notes --track-number 3/ x.mp3", "", "--track-number expects a number, got '3/'."},
      {"set --notes --strict --year 1977 /", "", isFolder + folderNote},
      {"read --notes --keep-going / /", "", isFolder + folderNote + "\nquillmark: " + isFolder, 2},
      {"apply --from=x.mp3 x.mp3", "", "apply needs --from <file>."},
      {"apply x.mp3 --from", "", "--from needs a value."},
      {"apply --fields mood --from x.mp3", "", noFiles},
      {"apply --from x --fields 'album, Year ' y", "", "Unknown field 'Year'" + noField},
      {"apply --from x --fields 'album\n' y", "", "Unknown field 'album\n'" + noField},
      {"apply --from x --fields album,\u00A0 y", "", "Unknown field ''" + noField},
  });
  EXPECT_EQ(folder.entryCount(), 0);
}

}  // namespace tests
