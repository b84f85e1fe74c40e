#include <functional>

#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace {

constexpr std::uint64_t huge = 250ULL << 20;

class BadInputTest : public ProgramTest {
 protected:
  const std::filesystem::path good = folder.file("good.mp3", track(text("TALB", "Mass"), 64));
};

}  // namespace

TEST_F(BadInputTest, IsReportedWithAMessageAndAStatus) {
  using Maker = std::function<void(const char* file)>;
  const auto holding = [](const std::string& contents) -> Maker {
    return [contents](const char* file) { std::ofstream(file) << contents; };
  };
  const auto linkTo = [](const char* target) -> Maker {
    return [target](const char* file) { std::filesystem::create_symlink(target, file); };
  };
  const auto other = [](const std::string& format) {
    return " is not an MP3 — it looks like " + format + ". Quillmark writes ID3 tags, which only MP3s have.";
  };
  for (const auto& [make, message] : std::vector<std::pair<Maker, std::string>>{
           {linkTo("nowhere"), " could not be read."},
           {linkTo("x.mp3"), " could not be read."},
           {linkTo("/dev/zero"), " could not be read: it is not a regular file."},
           {[](const char* file) { ::mkfifo(file, 0666); }, " could not be read: it is not a regular file."},
           {[](const char* file) { ::mkdir(file, 0777); }, " could not be read: it is a folder."},
           {holding(""), " is not an MP3 file."},
           {holding("\xFF\xDF" + audio()), " is not an MP3 file."},
           {holding("fLaC\0\0\0\x22"s), other("FLAC")},
           {holding("sizeftypM4A "), other("M4A")},
           {holding("sizeftypM4B "), other("MPEG-4")},
           {holding("OggS" + audio()), other("Ogg")},
           {holding("RIFF1234WAVE"), other("WAV")},
           {holding("FORM1234AIFF"), other("AIFF")},
           {holding("wvpk" + audio()), other("WavPack")},
           {holding("\xFF\xFB\x90\x44"), " is too short to be an MP3 file."},
           {holding(TagBytes(4).text("TIT2", "Old").declaring(huge) + audio(1000)),
            ": its ID3 tag says it is longer than the file."},
           {holding(audio()), " is not named .mp3, so its tag is neither read nor written."},
       }) {
    const std::string name = message.starts_with(" is not named") ? "track.mpeg" : "x.mp3";
    const std::filesystem::path file = folder.path() / name;
    make(file.c_str());
    const FileState before(file);
    check({{"read " + name, "", name + message},
           {"read --json " + name, "", name + message},
           {"apply --from " + name + " good.mp3", "", name + message},
           {"apply --from good.mp3 " + name, "\nchanged 0, unchanged 0, failed 1\n",
            "failed    " + name + ": " + name + message, 2}});
    EXPECT_TRUE(FileState(file) == before);
    std::filesystem::remove(file);
    EXPECT_EQ(folder.entryCount(), 1);
  }
}

TEST_F(BadInputTest, TakesFileNamesAsTheyAre) {
  for (const std::string name : {"with blanks .mp3", "-x.mp3", "\xFF\n\xC3.mp3", "~nobody.mp3", "%s.mp3"}) {
    folder.file(name, audio());
    check({{"apply --from good.mp3 '" + name + "'",
            "updated   " + name + "\n\nchanged 1, unchanged 0, failed 0\n"},
           {"read '" + name + "' good.mp3", name + ":\n  Album  Mass\n\ngood.mp3:\n  Album  Mass\n"},
           {"read 'no" + name + "'", "", "no" + name + " could not be read."}});
  }
}

TEST_F(BadInputTest, TakesNoMoreMemoryThanTheFileIsLarge) {
  folder.file("frame.mp3", TagBytes(3).frameDeclaring(huge, "PRIV", "p").padding(1000).characters());
  folder.file("tag.mp3", TagBytes(3).padding(1000).declaring(huge));
  // Only the scanner of raw frames recognises this tag.
  folder.file("raw.mp3", TagBytes(3, 0, 1).padding(1000).declaring(huge));
  const Finished applied = run("apply --from good.mp3 frame.mp3 tag.mp3 raw.mp3");
  EXPECT_LT(applied.peakKilobytes, run("help").peakKilobytes + (64L << 10));
  EXPECT_EQ(applied.output, "updated   frame.mp3\nupdated   raw.mp3\n\nchanged 2, unchanged 0, failed 1\n");

  // The picture is sparse and takes no room on the disk. It is not read, because no tag could contain it.
  std::filesystem::resize_file(folder.file("huge.png", "\x89PNG\r\n\x1A\n"), std::uint64_t{4} << 30);
  const Finished set = run("set --artwork huge.png good.mp3");
  EXPECT_EQ(set.error,
            "quillmark: failed    good.mp3: good.mp3: its tag would be larger than 256 MiB, more than an ID3 "
            "tag can hold.\n");
  EXPECT_EQ(set.status, 2);
  EXPECT_LT(set.peakKilobytes, 2L << 20);
}

}  // namespace tests
