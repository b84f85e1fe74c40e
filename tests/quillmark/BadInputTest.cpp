#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "tests/Files.h"
#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace filesystem = std::filesystem;

namespace {

class BadInputTest : public testing::Test {
 protected:
  static constexpr std::uint64_t huge = 250ULL << 20;

  const TemporaryFolder folder;
  const filesystem::path good = folder.file("good.mp3", track(text("TALB", "Mass"), 64));

  Finished run(const std::vector<std::string>& words) const { return quillmark(words, folder.path()); }
};

}  // namespace

TEST_F(BadInputTest, IsReportedWithAMessageAndAStatus) {
  using Maker = std::function<void(const filesystem::path&)>;
  const auto holding = [](std::string contents) -> Maker {
    return [contents](const auto& file) { std::ofstream(file) << contents; };
  };
  const auto linkTo = [](const char* target) -> Maker {
    return [target](const auto& file) { filesystem::create_symlink(target, file); };
  };
  const auto lookingLike = [](const std::string& format) {
    return "x.mp3 is not an MP3 — it looks like " + format +
           ". Quillmark writes ID3 tags, which only MP3s have.";
  };
  const std::string noMP3 = "x.mp3 is not an MP3 file.";
  const std::string notRead = "x.mp3 could not be read.";
  const std::string notRegular = "x.mp3 could not be read: it is not a regular file.";
  const std::string cutOff = "x.mp3: its ID3 tag says it is longer than the file.";
  struct Row {
    Maker make;
    std::string message;
    std::string name = "x.mp3";
  };
  for (const Row& row : std::vector<Row>{
           {linkTo("nowhere"), notRead},
           {linkTo("x.mp3"), notRead},
           {linkTo("/dev/zero"), notRegular},
           {[](const auto& file) { ::mkfifo(file.c_str(), 0666); }, notRegular},
           {[](const auto& file) { filesystem::create_directory(file); },
            "x.mp3 could not be read: it is a folder."},
           {holding(""), noMP3},
           {holding("\xFF\xDF" + audio()), noMP3},
           {holding("fLaC\0\0\0\x22"s), lookingLike("FLAC")},
           {holding("sizeftypM4A "), lookingLike("M4A")},
           {holding("sizeftypM4B "), lookingLike("MPEG-4")},
           {holding("OggS" + audio()), lookingLike("Ogg")},
           {holding("RIFF1234WAVE"), lookingLike("WAV")},
           {holding("FORM1234AIFF"), lookingLike("AIFF")},
           {holding("wvpk" + audio()), lookingLike("WavPack")},
           {holding("\xFF\xFB\x90\x44"), "x.mp3 is too short to be an MP3 file."},
           {holding(TagBytes(4).text("TIT2", "Old").declaring(huge) + audio(1000)), cutOff},
           {holding(audio()), "track.mpeg is not named .mp3, so its tag is neither read nor written.",
            "track.mpeg"},
       }) {
    SCOPED_TRACE(row.message);
    const filesystem::path file = folder.path() / row.name;
    row.make(file);
    const FileState before(file);
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"read", row.name}, {"read", "--json", row.name}, {"apply", "--from", row.name, "good.mp3"}}) {
      const Finished refused = run(arguments);
      EXPECT_EQ(refused.error, "quillmark: " + row.message + "\n");
      EXPECT_EQ(refused.output + std::to_string(refused.status), "1");
    }
    const Finished failed = run({"apply", "--from", "good.mp3", row.name});
    EXPECT_EQ(failed.error, "quillmark: failed    " + row.name + ": " + row.message + "\n");
    EXPECT_EQ(failed.output, "\nchanged 0, unchanged 0, failed 1\n");
    EXPECT_EQ(failed.status, 2);
    EXPECT_TRUE(FileState(file) == before);
    filesystem::remove(file);
    EXPECT_EQ(folder.entryCount(), 1);
  }
}

TEST_F(BadInputTest, TakesFileNamesAsTheyAre) {
  for (const std::string name : {"with blanks .mp3", "-x.mp3", "\xFF\n\xC3.mp3", "~nobody.mp3", "%s.mp3"}) {
    folder.file(name, audio());
    EXPECT_EQ(run({"apply", "--from", "good.mp3", name}).output,
              "updated   " + name + "\n\nchanged 1, unchanged 0, failed 0\n");
    EXPECT_EQ(run({"read", name, "good.mp3"}).output,
              name + ":\n  Album  Mass\n\ngood.mp3:\n  Album  Mass\n");
    EXPECT_EQ(run({"read", "no" + name}).error, "quillmark: no" + name + " could not be read.\n");
  }
}

TEST_F(BadInputTest, TakesNoMoreMemoryThanTheFileIsLarge) {
  folder.file("frame.mp3", TagBytes(3).frameDeclaring(huge, "PRIV", "p").padding(1000).characters());
  folder.file("tag.mp3", TagBytes(3).padding(1000).declaring(huge));
  // Only the scanner of raw frames recognises this tag.
  folder.file("raw.mp3", TagBytes(3, 0, 1).padding(1000).declaring(huge));
  const long little = run({"help"}).peakKilobytes + (64L << 10);
  const Finished applied = run({"apply", "--from", "good.mp3", "frame.mp3", "tag.mp3", "raw.mp3"});
  EXPECT_LT(applied.peakKilobytes, little);
  EXPECT_EQ(applied.output, "updated   frame.mp3\nupdated   raw.mp3\n\nchanged 2, unchanged 0, failed 1\n");

  // The picture is sparse and takes no room on the disk. It is not read, because no tag could contain it.
  std::filesystem::resize_file(folder.file("huge.png", "\x89PNG\r\n\x1A\n"), std::uint64_t{4} << 30);
  const Finished set = run({"set", "--artwork", "huge.png", "good.mp3"});
  EXPECT_EQ(set.error,
            "quillmark: failed    good.mp3: good.mp3: its tag would be larger than 256 MiB, more than an ID3 "
            "tag can hold.\n");
  EXPECT_EQ(set.status, 2);
  EXPECT_LT(set.peakKilobytes, 2L << 20);
}

}  // namespace tests
