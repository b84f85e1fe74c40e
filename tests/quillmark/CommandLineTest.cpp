#include <sys/resource.h>

#include "tests/Program.h"

namespace tests {

using CommandLineTest = ProgramTest;

constexpr std::uint64_t huge = 250ULL << 20;

TEST_F(CommandLineTest, IsAnsweredWithoutTouchingAFile) {
  const std::string usage = run("").output;
  EXPECT_TRUE(usage.starts_with("quillmark — read and write ID3 tags on MP3 files.\n\nUSAGE\n"));
  const std::string help = run("copy --help").output;
  EXPECT_TRUE(help.starts_with("quillmark copy — put one file's tags on the clipboard.\n\nUSAGE\n"));
  const std::string noFiles = "No files given.";
  const std::string isFolder = "/ could not be read: it is a folder.";
  const auto note = [](const std::string& text) { return "note: --" + text + "\nquillmark: "; };
  const std::string noField = ". Run 'quillmark fields' for the list.";
  check({
      {"help READ", usage},
      {"--help", usage},
      {"copy x.mp3 --help", help},
      {"READ", usage, "Unknown command 'READ'.\n"},
      {"read --json --x.mp3", "", noFiles},
      {"set --title --notes --notes --title=x --dry-run=x --albumartist", "",
       note("title=x is no option of set and is ignored; write --title x.") +
           note("dry-run=x is no option of set and is ignored; write --dry-run.") +
           note("albumartist is no option of set and is ignored; did you mean --album-artist?") + noFiles},
      {"set --notes --track-number 3/ x.mp3", "", "--track-number expects a number, got '3/'."},
      {"read --notes --keep-going / /", "",
       isFolder + "\nquillmark: note: --recursive takes the MP3 files in and below a folder.\nquillmark: " +
           isFolder,
       2},
      {"apply --from=x.mp3 x.mp3", "", "apply needs --from <file>."},
      {"apply x.mp3 --from", "", "--from needs a value."},
      {"apply --fields mood --from x.mp3", "", noFiles},
      {"apply --from x --fields 'album, Year ' y", "", "Unknown field 'Year'" + noField},
      {"apply --from x --fields 'album\n' y", "", "Unknown field 'album\n'" + noField},
      {"apply --from x --fields album,\u00A0 y", "", "Unknown field ''" + noField},
  });
  EXPECT_EQ(folder.entryCount(), 0);
}

TEST_F(CommandLineTest, NamesFilesThatCannotBeRead) {
  const auto good = folder.file("good.mp3", track(text("TALB", "Mass"), 64));
  shell(
      "ln -s nowhere link.mp3; ln -s loop.mp3 loop.mp3; ln -s /dev/zero device.mp3; mkdir folder.mp3; "
      "mkfifo pipe.mp3");
  const std::string notRegular = " could not be read: it is not a regular file.";
  const auto other = [](const std::string& format) {
    return " is not an MP3 — it looks like " + format + ". Quillmark writes ID3 tags, which only MP3s have.";
  };
  for (const auto& [name, contents, message] : std::vector<std::array<std::string, 3>>{
           {"link.mp3", "", " could not be read."},
           {"loop.mp3", "", " could not be read."},
           {"device.mp3", "", notRegular},
           {"pipe.mp3", "", notRegular},
           {"folder.mp3", "", " could not be read: it is a folder."},
           {"empty.mp3", "", " is not an MP3 file."},
           {"junk.mp3", "\xFF\xDF" + audio(), " is not an MP3 file."},
           {"flac.mp3", "fLaC\0\0\0\x22"s, other("FLAC")},
           {"m4a.mp3", "sizeftypM4A ", other("M4A")},
           {"m4b.mp3", "sizeftypM4B ", other("MPEG-4")},
           {"ogg.mp3", "OggS" + audio(), other("Ogg")},
           {"wav.mp3", "RIFF1234WAVE", other("WAV")},
           {"aiff.mp3", "FORM1234AIFF", other("AIFF")},
           {"wavpack.mp3", "wvpk" + audio(), other("WavPack")},
           {"short.mp3", "\xFF\xFB\x90\x44", " is too short to be an MP3 file."},
           {"cut.mp3", TagBytes(4).text("TIT2", "Old").declaring(huge) + audio(1000),
            ": its ID3 tag says it is longer than the file."},
           {"track.mpeg", audio(), " is not named .mp3, so its tag is neither read nor written."},
       }) {
    const auto file = folder.path() / name;
    if (!contents.empty() || name == "empty.mp3") folder.file(name, contents);
    const std::string before = stateOf(file);
    check({{"read " + name, "", name + message},
           {"read --json " + name, "", name + message},
           {"apply --from " + name + " good.mp3", "", name + message},
           {"apply --from good.mp3 " + name, "\nchanged 0, unchanged 0, failed 1\n",
            "failed    " + name + ": " + name + message, 2}});
    EXPECT_TRUE(stateOf(file) == before);
  }
  EXPECT_EQ(folder.entryCount(), 18);
  for (const std::string name : {"with blanks .mp3", "-x.mp3", "\xFF\n\xC3.mp3", "~nobody.mp3", "%s.mp3"}) {
    folder.file(name, audio());
    check({{"apply --from good.mp3 '" + name + "'",
            "updated   " + name + "\n\nchanged 1, unchanged 0, failed 0\n"},
           {"read '" + name + "' good.mp3", name + ":\n  Album  Mass\n\ngood.mp3:\n  Album  Mass\n"},
           {"read 'no" + name + "'", "", "no" + name + " could not be read."}});
  }
}

TEST_F(CommandLineTest, TakesNoMoreMemoryThanTheFileIsLarge) {
  folder.file("good.mp3", track(text("TALB", "Mass"), 64));
  folder.file("frame.mp3", TagBytes(3).frameDeclaring(huge, "PRIV", "p").padding(1000).characters());
  folder.file("tag.mp3", TagBytes(3).padding(1000).declaring(huge));
  // Only the scanner of raw frames recognises this tag.
  folder.file("raw.mp3", TagBytes(3, 0, 1).padding(1000).declaring(huge));
  run("help");
  const auto peakKilobytes = [] {
    struct rusage usage {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
  };
  const long little = peakKilobytes() + (64L << 10);
  check({{"apply --from good.mp3 frame.mp3 tag.mp3 raw.mp3",
          "updated   frame.mp3\nupdated   raw.mp3\n\nchanged 2, unchanged 0, failed 1\n",
          "failed    tag.mp3: tag.mp3: its ID3 tag says it is longer than the file.", 2}});
  EXPECT_LT(peakKilobytes(), little);
  // The picture is sparse and takes no room on the disk. It is not read, because no tag could contain it.
  std::filesystem::resize_file(folder.file("huge.png", "\x89PNG\r\n\x1A\n"), std::uint64_t{4} << 30);
  const std::string tooLarge = "its tag would be larger than 256 MiB, more than an ID3 tag can hold.";
  check({{"set --artwork huge.png good.mp3", "\nchanged 0, unchanged 0, failed 1\n",
          "failed    good.mp3: good.mp3: " + tooLarge, 2}});
  EXPECT_LT(peakKilobytes(), 2L << 20);
}

}  // namespace tests
