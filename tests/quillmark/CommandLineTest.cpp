#include <gtest/gtest.h>

#include "tests/Program.h"

namespace tests {

namespace {

const std::string usage = R"(quillmark — read and write ID3 tags on MP3 files.

USAGE
  quillmark read  [--json] <files...>
  quillmark copy  <file>
  quillmark paste [--all | --fields <a,b>] [--dry-run] <files...>
  quillmark apply --from <file> [--all | --fields <a,b>] [--dry-run] <files...>
  quillmark set   [--<field> <value>]... [--clear <a,b>] [--dry-run] <files...>
  quillmark fields

FIELD SELECTION
  By default paste and apply copy album identity only — album, artist, genre,
  year, disc, artwork and friends — leaving each file's own title and track
  number alone. Pass --all for a full clone, or --fields to name your own.

EXAMPLES
  quillmark read track.mp3
  quillmark copy "01 Kyrie.mp3" && quillmark paste *.mp3
  quillmark apply --from "01 Kyrie.mp3" --all "02 Gloria.mp3"
  quillmark set --artist "Väskelund" --year 1977 --clear comment *.mp3
  quillmark set --artwork cover.jpg *.mp3

Tags are written as ID3v2.3. Files are rewritten atomically and keep their
original modification date.
)";

}  // namespace

TEST(CommandLineTest, AnswersWithoutTouchingAFile) {
  struct Row {
    std::vector<std::string> arguments;
    int status;
    std::string output;
    std::string error;
  };
  const std::string noSource = "quillmark: apply needs --from <file>.\n";
  const auto unknownField = [](const std::string& name) {
    return "quillmark: Unknown field '" + name + "'. Run 'quillmark fields' for the list.\n";
  };
  const auto note = [](const std::string& text) { return "quillmark: note: --" + text + "\n"; };
  const std::string copyHelp =
      "quillmark copy — put one file's tags on the clipboard.\n\nUSAGE\n  quillmark copy [<options...>] "
      "<file>\n"
      "\nOPTIONS\n  --no-desktop  leave the desktop's clipboard alone\n"
      "  --lossless    keep everything that other programs wrote\n"
      "  --notes       print notes even if there is no terminal\n"
      "  --strict      check the words and all files before the first write\n"
      "  --help        print this text\n"
      "\nEXAMPLE\n  quillmark copy \"01 Kyrie.mp3\"\n";
  const std::string noFiles = "quillmark: No files given.\n";
  for (const Row& row : std::vector<Row>{
           {{}, 0, usage, ""},
           {{"help", "READ"}, 0, usage, ""},
           {{"--help"}, 0, usage, ""},
           {{"READ"}, 1, usage, "quillmark: Unknown command 'READ'.\n\n"},
           {{"read", "--json", "--x.mp3"}, 1, "", noFiles},
           {{"copy", "x.mp3", "--help"}, 0, copyHelp, ""},
           {{"read", "--notes", "--jsno", "--all"},
            1,
            "",
            note("jsno is no option of read and is ignored; did you mean --json?") +
                note("all is no option of read and is ignored.") + noFiles},
           {{"set", "--title", "--notes", "--notes", "--title=x", "--dry-run=x", "--titel=x",
             "--albumartist"},
            1,
            "",
            note("title=x is no option of set and is ignored; write --title x.") +
                note("dry-run=x is no option of set and is ignored; write --dry-run.") +
                note("titel=x is no option of set and is ignored; did you mean --title?") +
                note("albumartist is no option of set and is ignored; did you mean --album-artist?") +
                noFiles},
           {{"set", "--notes", "--track-number", "3/", "x.mp3"},
            1,
            "",
            "quillmark: --track-number expects a number, got '3/'.\n"},
           {{"set", "--notes", "--strict", "--year", "1977", "/"},
            1,
            "",
            "quillmark: / could not be read: it is a folder.\n"
            "quillmark: note: --recursive takes the MP3 files in and below a folder.\n"},
           {{"read", "--notes", "--keep-going", "/", "/"},
            2,
            "",
            "quillmark: / could not be read: it is a folder.\n"
            "quillmark: note: --recursive takes the MP3 files in and below a folder.\n"
            "quillmark: / could not be read: it is a folder.\n"},
           {{"apply", "--from=x.mp3", "x.mp3"}, 1, "", noSource},
           {{"apply", "x.mp3", "--from"}, 1, "", "quillmark: --from needs a value.\n"},
           {{"apply", "--fields", "mood", "--from", "x.mp3"}, 1, "", noFiles},
           {{"apply", "--from", "x", "--fields", "album, Year ", "y"}, 1, "", unknownField("Year")},
           {{"apply", "--from", "x", "--fields", "album\n", "y"}, 1, "", unknownField("album\n")},
           {{"apply", "--from", "x", "--fields", "album,\u00A0", "y"}, 1, "", unknownField("")},
       }) {
    SCOPED_TRACE(testing::PrintToString(row.arguments));
    const TemporaryFolder folder;
    const Finished run = quillmark(row.arguments, folder.path());
    EXPECT_EQ(run.status, row.status);
    EXPECT_EQ(run.output, row.output);
    EXPECT_EQ(run.error, row.error);
    EXPECT_EQ(folder.entryCount(), 0);
  }
}

}  // namespace tests
