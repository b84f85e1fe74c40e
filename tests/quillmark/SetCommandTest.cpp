#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

#include "tests/Files.h"
#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace {

const std::string png = "\x89PNG\r\n\x1A\n picture";

class SetCommandTest : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.file(
      "01.mp3", track(text("TIT2", "Kyrie") + text("TPE1", "Choir") + frame("COMM", "\0eng\0Live"s), 64));

  Finished set(std::vector<std::string> words) const {
    words.insert(words.begin(), "set");
    words.emplace_back("01.mp3");
    return quillmark(words, folder.path());
  }
};

}  // namespace

TEST_F(SetCommandTest, WritesAndClearsTheNamedFields) {
  folder.file("cover", png);
  const std::string before = contentsOf(file);
  const std::string rest = "  Artist   Choir\n  Comment  Live\n";
  for (const auto& [options, listing] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"--title", " Gloria\n"}, "  Title    Gloria\n" + rest},
           {{"--title", "", "--clear", ",, comment"}, "  Artist  Choir\n"},
           {{"--clear", "title", "--title", "--dry-run"}, "  Title    --dry-run\n" + rest},
           {{"--artist", "A", "--album-artist", "B", "--albumArtist", "C", "--artist", "D"},
            "  Title         Kyrie\n  Artist        D\n  Album Artist  C\n  Comment       Live\n"},
           {{"--year", "-5", "--disc-number", "+2", "--clear", "comment,artist", "--artwork", "~/cover"},
            "  Title        Kyrie\n  Year         -5\n  Disc Number  2\n  Artwork      PNG, 16 bytes\n"},
           {{"--title", "Gloria", "--dry-run"}, "  Title    Kyrie\n" + rest},
       }) {
    SCOPED_TRACE(testing::PrintToString(options));
    folder.file("01.mp3", before);
    EXPECT_EQ(set(options).error, "");
    EXPECT_EQ(quillmark({"read", "01.mp3"}, folder.path()).output, listing);
  }
  set({"--artwork", folder.file("camera", "\xFF\xD8\xFF\xE1 Exif\0\0"s)});
  for (const auto& same :
       std::vector<std::vector<std::string>>{{"--title", "Kyrie "}, {"--artwork", "camera"}}) {
    EXPECT_EQ(set(same).output, "unchanged 01.mp3\n\nchanged 0, unchanged 1, failed 0\n");
  }
}

TEST_F(SetCommandTest, ReportsChangesWithDiff) {
  std::filesystem::create_directory(folder.path() / "a");
  folder.file("a/cover", png);
  folder.file("other", "\x89PNG\r\n\x1A\n picturf");
  const std::string verse(40, 'v');
  const auto report = [](const std::string& lines) {
    return "updated   ./01.mp3\n" + lines + "\nchanged 1, unchanged 0, failed 1\n";
  };
  for (const auto& [options, lines] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"--title", "Gloria", "--clear", "comment", "--track-number", "2"},
            "    - Title         Kyrie\n    + Title         Gloria\n    - Comment       Live\n"
            "    + Track Number  2\n"},
           {{"--title", "a\x1B\xC2\x9B", "--artwork", "a/cover", "--lyrics", verse + "\u202E\n" + verse},
            "    - Title         Gloria\n    + Title         a\\x1b\\u009b\n    + Lyrics        " + verse +
                "\\u202e…\n    + Artwork       PNG, 16 bytes\n"},
           {{"--artwork", "other", "--lyrics", verse + "\u202E\n" + verse + verse + "w"},
            "    - Lyrics        …" + verse.substr(20) + "\n    + Lyrics        …" + verse.substr(20) +
                verse.substr(1) +
                "…\n    - Artwork       PNG, 16 bytes, 021b49bb\n"
                "    + Artwork       PNG, 16 bytes, 9b121801\n"},
       }) {
    SCOPED_TRACE(testing::PrintToString(options));
    auto words = options;
    words.insert(words.end(), {"--diff", "--paths", "./01.mp3", "a/no.mp3"});
    words.insert(words.begin(), "set");
    const Finished run = quillmark(words, folder.path());
    EXPECT_EQ(run.output, report(lines));
    EXPECT_EQ(run.error, "quillmark: failed    a/no.mp3: no.mp3 could not be read.\n");
  }
}

TEST_F(SetCommandTest, TakesAPictureFromAPipe) {
  const auto pipe = folder.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const auto writing = std::async(std::launch::async, [&] {
    std::ofstream slow(pipe);
    slow << png.substr(0, 10) << std::flush;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    slow << png.substr(10);
  });
  EXPECT_EQ(set({"--artwork", "pipe"}).error, "");
  EXPECT_EQ(quillmark({"read", "01.mp3"}, folder.path()).output,
            "  Title    Kyrie\n  Artist   Choir\n  Comment  Live\n  Artwork  PNG, 16 bytes\n");
}

TEST_F(SetCommandTest, RefusesABadLineBeforeAnyFileIsTouched) {
  folder.file("gif", "GIF89a");
  folder.file("empty", "");
  ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
  std::vector<std::pair<std::vector<std::string>, std::string>> rows{
      {{"--clear", ","}, "set needs at least one field, e.g. --artist \"Väskelund\"."},
      {{"--year", "1977.0"}, "--year expects a number, got '1977.0'."},
      {{"--trackNumber", " 1", "--bpm", ""}, "--trackNumber expects a number, got ' 1'."},
      {{"--year", "9223372036854775808"}, "--year expects a number, got '9223372036854775808'."},
      {{"--title", "A", "--clear", "title, Mood ,x"},
       "Unknown field 'Mood'. Run 'quillmark fields' for the list."},
      {{"--title", "A\xFF"}, "--title expects text in UTF-8."},
      {{"--clear", " \x80"}, "Unknown field ' \x80'. Run 'quillmark fields' for the list."},
  };
  for (const std::string path : {"gif", "empty", "pipe", "~/missing"}) {
    rows.push_back({{"--artwork", path}, "Could not read artwork at " + path + " (expected a JPEG or PNG)."});
  }
  const FileState before(file);
  for (const auto& [options, error] : rows) {
    const Finished run = set(options);
    EXPECT_EQ(run.error, "quillmark: " + error + "\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(FileState(file) == before) << error;
  }
  EXPECT_EQ(quillmark({"set", "--year", "x"}, folder.path()).error, "quillmark: No files given.\n");
}

}  // namespace tests
