#include "platform/FileError.h"
#include "tests/Files.h"
#include "tests/ID3TagEditor/Engine.h"

namespace tests {

namespace {

namespace fs = std::filesystem;

ID3Tag newTag() {
  return ID32v3TagBuilder().title(Text("new")).build();
}

const std::string newTagBytes = written(newTag());
const std::string oldTagBytes = TagBytes(4).text("TIT2", "old").padding(500).characters();

void write(const fs::path& to, const std::optional<fs::path>& andSaveTo = {}) {
  Editor().write(newTag(), to, andSaveTo);
}

TEST(Mp3File, AcceptsOnlyTheExtensionOfMP3s) {
  const TemporaryFolder folder;
  for (const auto* name : {"a.mp3", "a.MP3", "a.b.Mp3"}) {
    EXPECT_TRUE(Editor().read(folder.file(name, oldTagBytes + audio()))) << name;
  }
  const auto refused = EngineError::invalidFileFormat;
  for (const auto* name : {"a.mp4", "mp3", "a.mp3.bak", "amp3", "a.mp3/a"}) {
    EXPECT_EQ(engineErrorOf([&] { Editor().read(folder.path() / name); }), refused) << name;
    EXPECT_EQ(engineErrorOf([&] { write(folder.path() / "a.mp3", folder.path() / "new" / name); }), refused);
  }
  EXPECT_FALSE(fs::exists(folder.path() / "new"));
}

TEST(Mp3File, ReadsTheTagAndRefusesCutOffFiles) {
  const TemporaryFolder folder;
  const auto read = [&](const std::string& contents) {
    return Editor().read(folder.file("a.mp3", contents));
  };
  const std::string header = "ID3\3\0\0\0\0\2\1"s;
  EXPECT_EQ(read(header + std::string(257, 'x')).value().properties.size, 257U);
  EXPECT_FALSE(read(TagBytes(4, 0, 1).characters()));
  for (const std::string& contents :
       {""s, header.substr(0, 9), std::string(9, '\0'), header + std::string(256, 'x'),
        TagBytes(3).padding(1024).declaring(250U << 20)}) {
    EXPECT_EQ(engineErrorOf([&] { read(contents); }), EngineError::corruptedFile);
    EXPECT_EQ(engineErrorOf([&] { write(folder.path() / "a.mp3"); }), EngineError::corruptedFile);
    EXPECT_EQ(contentsOf(folder.path() / "a.mp3"), contents);
  }
}

TEST(Mp3File, ReplacesTheTagInPlaceOrInAnotherFile) {
  const TemporaryFolder folder;
  // More audio than is copied at once.
  const std::string longAudio = audio(3 * 131072 + 1);
  const fs::path longer = folder.file("longer.mp3", audio(500000));
  for (const std::string& before : {oldTagBytes + longAudio, longAudio}) {
    const fs::path file = folder.file("a.mp3", before);
    for (const fs::path& to : {folder.path() / "x" / "y" / "b.MP3", longer}) {
      write(file, to);
      EXPECT_TRUE(contentsOf(to) == newTagBytes + longAudio) << to;
    }
    EXPECT_TRUE(contentsOf(file) == before);
    write(file);
    EXPECT_TRUE(contentsOf(file) == newTagBytes + longAudio);
  }
  EXPECT_EQ(folder.entryCount(), 3);
}

TEST(Mp3File, KeepsTheAudioOfAFileThatIsItsOwnDestination) {
  const TemporaryFolder folder;
  const fs::path file = folder.file("a.mp3", "");
  fs::create_symlink("a.mp3", folder.path() / "link.mp3");
  for (const auto* other : {"a.mp3", "./a.mp3", "link.mp3", "hard.mp3"}) {
    const fs::path otherFile = folder.path() / other;
    for (const auto& [from, to] : {std::pair(file, otherFile), {otherFile, file}}) {
      folder.file("a.mp3", oldTagBytes + audio());
      // The previous replacement has separated the file from this link.
      fs::remove(folder.path() / "hard.mp3");
      fs::create_hard_link(file, folder.path() / "hard.mp3");
      write(from, to);
      EXPECT_TRUE(contentsOf(to) == newTagBytes + audio()) << other;
      EXPECT_TRUE(fs::is_symlink(folder.path() / "link.mp3"));
    }
  }
}

TEST(Mp3File, ChangesNothingIfItCannotWrite) {
  const TemporaryFolder folder;
  const std::string before = oldTagBytes + audio();
  const fs::path file = folder.file("a.mp3", before);
  ID3Tag empty(ID3Version::version3);
  EXPECT_EQ(engineErrorOf([&] { Editor().write(empty, file); }), EngineError::invalidTagData);
  EXPECT_EQ(engineErrorOf([&] { Editor().write(empty, file, folder.path() / "new" / "b.mp3"); }),
            EngineError::invalidTagData);
  EXPECT_THROW(write(file, file / "below" / "b.mp3"), platform::FileError);
  fs::create_directory(folder.path() / "folder.mp3");
  EXPECT_THROW(write(file, folder.path() / "folder.mp3"), platform::FileError);
  EXPECT_TRUE(contentsOf(file) == before);
  EXPECT_EQ(folder.entryCount(), 2);
}

}  // namespace

}  // namespace tests
