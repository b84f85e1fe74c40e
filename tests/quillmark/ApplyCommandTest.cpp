#include <gtest/gtest.h>

#include "tests/Files.h"
#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace {

class ApplyCommandTest : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const std::filesystem::path source =
      folder.file("01.mp3", track(text("TIT2", "Kyrie") + text("TALB", "Mass") + text("TRCK", "1/2"), 64));
  const std::filesystem::path target =
      folder.file("02.mp3", track(text("TIT2", "Gloria") + text("TRCK", "2") + text("TCON", "Pop"), 64));

  Finished apply(std::vector<std::string> words) const {
    words.insert(words.begin(), {"apply", "--from", "01.mp3"});
    return quillmark(words, folder.path());
  }
};

}  // namespace

TEST_F(ApplyCommandTest, ChangesTheSelectedFields) {
  const std::string targetBefore = contentsOf(target);
  const std::string asBefore = "  Title         Gloria\n  Genre         Pop\n  Track Number  2\n";
  const std::string identity =
      "  Title         Gloria\n  Album         Mass\n  Track Number  2\n  Track Total   2\n";
  const std::string albumOnly =
      "  Title         Gloria\n  Album         Mass\n  Genre         Pop\n  Track Number  2\n";
  const std::string clone =
      "  Title         Kyrie\n  Album         Mass\n  Track Number  1\n  Track Total   2\n";
  const std::string updated = "updated   02.mp3\n\nchanged 1, unchanged 0, failed 0\n";
  const std::string unchanged = "unchanged 02.mp3\n\nchanged 0, unchanged 1, failed 0\n";
  const std::string would = "would     02.mp3\n\nwould change 1, unchanged 0, failed 0\n";
  struct Row {
    std::vector<std::string> options;
    std::string listing;
    std::string report;
  };
  for (const Row& row : std::vector<Row>{
           {{"--dryrun", "--all=yes"}, identity, updated},
           {{"--all"}, clone, updated},
           {{"--all", "--fields", "mood", "--fields", ",\talbum,albumArtist\u2003,"}, albumOnly, updated},
           {{"--fields", ",,", "--all"}, asBefore, unchanged},
           {{"--fields", "genre", "--from", "02.mp3"}, asBefore, unchanged},
           {{"--dry-run", "--all"}, asBefore, would},
       }) {
    SCOPED_TRACE(testing::PrintToString(row.options));
    folder.file("02.mp3", targetBefore);
    const FileState before(target);
    auto words = row.options;
    words.emplace_back("02.mp3");
    const Finished run = apply(words);
    EXPECT_EQ(run.output + run.error, row.report);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(quillmark({"read", "02.mp3"}, folder.path()).output, row.listing);
    EXPECT_EQ(FileState(target) == before, row.listing == asBefore);
  }
  EXPECT_EQ(folder.entryCount(), 2);
}

TEST_F(ApplyCommandTest, ReportsEachFileAndContinues) {
  const FileState sourceBefore(source);
  const Finished run = apply({"02.mp3", "missing.mp3", "~/01.mp3", folder.path() / "02.mp3"});
  EXPECT_EQ(run.output,
            "updated   02.mp3\nunchanged 01.mp3\nunchanged 02.mp3\n\nchanged 1, unchanged 2, failed 1\n");
  EXPECT_EQ(run.error, "quillmark: failed    missing.mp3: missing.mp3 could not be read.\n");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(FileState(source) == sourceBefore);
}

}  // namespace tests
