#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "tests/FileState.h"
#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace filesystem = std::filesystem;

namespace {

using Maker = std::function<void(const filesystem::path&)>;

Maker holding(std::string_view contents) {
  return
      [contents = std::string(contents)](const filesystem::path& file) { std::ofstream(file) << contents; };
}
Maker linkTo(std::string_view target) {
  return [target](const filesystem::path& file) { filesystem::create_symlink(target, file); };
}

constexpr std::uint64_t huge = 250ULL << 20;

}  // namespace

TEST(BadInputTest, GetsAClearLineAndAStatus) {
  struct Row {
    Maker make;
    std::string message;
    std::string name = "x.mp3";
  };
  const auto lookingLike = [](const std::string& format) {
    return "x.mp3 is not an MP3 — it looks like " + format +
           ". Quillmark writes ID3 tags, which only MP3s have.";
  };
  const std::string noMP3 = "x.mp3 is not an MP3 file.";
  const std::string notRead = "x.mp3 could not be read.";
  const std::string cutOff = "x.mp3: its ID3 tag says it is longer than the file.";
  for (const Row& row : std::vector<Row>{
           {[](const auto&) {}, notRead},
           {linkTo("nowhere"), notRead},
           {linkTo("x.mp3"), notRead},
           {linkTo("/dev/zero"), "x.mp3 could not be read: it is not a regular file."},
           {[](const auto& file) { ::mkfifo(file.c_str(), 0666); },
            "x.mp3 could not be read: it is not a regular file."},
           {[](const auto& file) { filesystem::create_directory(file); },
            "x.mp3 could not be read: it is a folder."},
           {holding(""), noMP3},
           {holding("\xFF\xFB"), noMP3},
           {holding("some text"), noMP3},
           {holding("fLaC\0\0\0\x22"sv), lookingLike("FLAC")},
           {holding("sizeftypM4A "), lookingLike("M4A")},
           {holding("OggS" + audio()), lookingLike("Ogg")},
           {holding("RIFF1234WAVE"), lookingLike("WAV")},
           {holding("FORM1234AIFF"), lookingLike("AIFF")},
           {holding("wvpk" + audio()), lookingLike("WavPack")},
           {holding("\xFF\xFB\x90\x44"), "x.mp3 is too short to be an MP3 file."},
           {holding(TagBytes(3).text("TIT2", "Old").declaring(5000).characters() + audio()), cutOff},
           {holding(TagBytes(4).text("TIT2", "Old").declaring(huge).characters() + audio(1000)), cutOff},
           {holding(audio()), "track.mpeg is not named .mp3, so its tag cannot be edited.", "track.mpeg"},
       }) {
    SCOPED_TRACE(row.message);
    const TemporaryFolder folder;
    folder.file("good.mp3", track(text("TALB", "Mass"), 64));
    const filesystem::path file = folder.path() / row.name;
    row.make(file);
    const FileState before(file);
    const auto entries = folder.entryCount();
    const std::string escaped = "quillmark: " + row.message + "\n";
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"read", row.name}, {"read", "--json", row.name}, {"apply", "--from", row.name, "good.mp3"}}) {
      const Finished run = quillmark(arguments, folder.path());
      EXPECT_EQ(run.error, escaped);
      EXPECT_EQ(run.output, "");
      EXPECT_EQ(run.status, 1);
    }
    const Finished run = quillmark({"apply", "--from", "good.mp3", row.name}, folder.path());
    EXPECT_EQ(run.error, "quillmark: failed    " + row.name + ": " + row.message + "\n");
    EXPECT_EQ(run.output, "\nchanged 0, unchanged 0, failed 1\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(FileState(file) == before);
    EXPECT_EQ(folder.entryCount(), entries);
  }
}

TEST(BadInputTest, TakesFileNamesAsTheyAre) {
  for (const std::string name :
       {"with blanks .mp3", "-x.mp3", "line\nfeed.mp3", "\xFF\xC3.mp3", "~nobody.mp3", "%s.mp3"}) {
    SCOPED_TRACE(name);
    const TemporaryFolder folder;
    folder.file("good.mp3", track(text("TALB", "Mass"), 64));
    folder.file(name, audio());
    EXPECT_EQ(quillmark({"apply", "--from", "good.mp3", name}, folder.path()).output,
              "updated   " + name + "\n\nchanged 1, unchanged 0, failed 0\n");
    EXPECT_EQ(quillmark({"read", name, name}, folder.path()).output,
              name + ":\n  Album  Mass\n\n" + name + ":\n  Album  Mass\n");
    EXPECT_EQ(quillmark({"read", "missing" + name}, folder.path()).error,
              "quillmark: missing" + name + " could not be read.\n");
    EXPECT_EQ(folder.entryCount(), 2);
  }
}

TEST(BadInputTest, TakesNoMoreMemoryThanTheFileIsLarge) {
  const TemporaryFolder folder;
  folder.file("good.mp3", track(text("TALB", "Mass"), 64));
  folder.file("frame.mp3", TagBytes(3).frameDeclaring(huge, "PRIV", "p").padding(1000).characters());
  folder.file("tag.mp3", TagBytes(3).declaring(huge).padding(1000).characters());
  // Of this one only the scanner of raw frames sees the tag.
  folder.file("raw.mp3", TagBytes(3).revision(1).declaring(huge).padding(1000).characters());
  const long little = quillmark({"help"}, folder.path()).peakKilobytes + (64L << 10);
  const Finished run =
      quillmark({"apply", "--from", "good.mp3", "frame.mp3", "tag.mp3", "raw.mp3"}, folder.path());
  EXPECT_LT(run.peakKilobytes, little);
  EXPECT_EQ(run.output, "updated   frame.mp3\nupdated   raw.mp3\n\nchanged 2, unchanged 0, failed 1\n");
}

}  // namespace tests
