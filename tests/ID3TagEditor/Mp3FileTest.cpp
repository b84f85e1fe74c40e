#include "platform/FileError.h"
#include "tests/ID3TagEditor/Engine.h"
#include "tests/TemporaryFolder.h"

namespace tests {

namespace {

namespace fs = std::filesystem;

ID3Tag newTag() {
  return ID32v3TagBuilder().title(Text("new")).build();
}

const std::string newTagBytes = written(newTag());
const std::string oldTagBytes = TagBytes(4).text("TIT2", "old").padding(500).characters();

void write(const fs::path& to, const std::optional<fs::path>& andSaveTo = {},
           const Editor::TagRevision& revise = nullptr) {
  ID3Tag tag = newTag();
  Editor().write(tag, to, andSaveTo, revise);
}

TEST(Mp3File, ReadsOnlyFilesOfTheExtension) {
  const TemporaryFolder folder;
  const std::string mp3 = oldTagBytes + audio();
  for (const auto* name : {"a.mp3", "a.MP3", "a.b.Mp3"}) {
    EXPECT_TRUE(Editor().read(folder.file(name, mp3))) << name;
  }
  for (const auto* name : {"a.mp4", "a.wav", "a", "mp3", "a.mp3.bak", "a.mp3 ", "amp3", "a.mp3/a"}) {
    EXPECT_EQ(engineErrorOf([&] { Editor().read(folder.path() / name); }), EngineError::invalidFileFormat)
        << name;
    EXPECT_EQ(engineErrorOf([&] { write(folder.path() / name); }), EngineError::invalidFileFormat) << name;
    EXPECT_EQ(engineErrorOf([&] { write(folder.path() / "a.mp3", folder.path() / "new" / name); }),
              EngineError::invalidFileFormat)
        << name;
  }
  EXPECT_FALSE(fs::exists(folder.path() / "new"));
}

TEST(Mp3File, TakesTheTagAndNothingElse) {
  const TemporaryFolder folder;
  const auto read = [&](const std::string& contents) {
    return Editor().read(folder.file("a.mp3", contents));
  };
  const std::string header = "ID3\3\0\0\0\0\2\1"s;
  EXPECT_EQ(read(header + std::string(257, 'x')).value().properties.size, 257U);
  EXPECT_FALSE(read(std::string(2000, '\0')));
  EXPECT_FALSE(read(TagBytes(4).revision(1).characters()));
  for (const std::string& contents :
       {""s, header.substr(0, 9), std::string(9, '\0'), header + std::string(256, 'x'),
        TagBytes(3).declaring(250U << 20).padding(1024).characters()}) {
    EXPECT_EQ(engineErrorOf([&] { read(contents); }), EngineError::corruptedFile);
    EXPECT_EQ(engineErrorOf([&] { write(folder.path() / "a.mp3"); }), EngineError::corruptedFile);
    EXPECT_EQ(contentsOf(folder.path() / "a.mp3"), contents);
  }
  // Behind the declared end is audio, also for a frame that claims it.
  const auto tag = TagBytes(3).text("TALB", "A").frameDeclaring(69, "TIT2", "\0T"s).padding(60);
  const ID3Tag cut = read(tag.characters() + audio()).value();
  EXPECT_EQ(ID3TagContentReader(cut).album(), "A");
  EXPECT_EQ(ID3TagContentReader(cut).title(), std::nullopt);
  EXPECT_THROW(Editor().read(folder.path() / "missing.mp3"), platform::FileError);
}

TEST(Mp3File, ReplacesTheTagInPlace) {
  const TemporaryFolder folder;
  // More audio than is copied at once.
  const std::string longAudio = audio(3 * 131072 + 1);
  for (const std::string& before : {oldTagBytes, ""s}) {
    const fs::path file = folder.file("a.mp3", before + longAudio);
    write(file);
    EXPECT_TRUE(contentsOf(file) == newTagBytes + longAudio);
    EXPECT_EQ(folder.entryCount(), 1);
  }
}

TEST(Mp3File, WritesIntoAnotherFile) {
  const TemporaryFolder folder;
  const std::string before = oldTagBytes + audio(140000);
  const fs::path file = folder.file("a.mp3", before);
  for (const fs::path& to : {folder.path() / "x" / "y" / "b.MP3", folder.file("longer.mp3", audio(500000))}) {
    write(file, to);
    EXPECT_TRUE(contentsOf(to) == newTagBytes + audio(140000)) << to;
  }
  EXPECT_TRUE(contentsOf(file) == before);
}

TEST(Mp3File, KeepsTheAudioOfAFileThatIsItsOwnDestination) {
  const TemporaryFolder folder;
  const fs::path file = folder.path() / "a.mp3";
  fs::create_directory(folder.path() / "sub");
  fs::create_symlink("a.mp3", folder.path() / "link.mp3");
  for (const auto* other : {"a.mp3", "./a.mp3", "sub/../a.mp3", "link.mp3"}) {
    SCOPED_TRACE(other);
    for (const bool isSource : {false, true}) {
      folder.file("a.mp3", oldTagBytes + audio());
      const fs::path otherFile = folder.path() / other;
      isSource ? write(otherFile, file) : write(file, otherFile);
      EXPECT_TRUE(contentsOf(file) == newTagBytes + audio());
      EXPECT_TRUE(fs::is_symlink(folder.path() / "link.mp3"));
    }
  }
  folder.file("a.mp3", oldTagBytes + audio());
  fs::create_hard_link(file, folder.path() / "hard.mp3");
  write(file, folder.path() / "hard.mp3");
  EXPECT_TRUE(contentsOf(folder.path() / "hard.mp3") == newTagBytes + audio());
}

TEST(Mp3File, LeavesEverythingAsItWasWhenItCannotWrite) {
  const TemporaryFolder folder;
  const std::string before = oldTagBytes + audio();
  const fs::path file = folder.file("a.mp3", before);
  ID3Tag empty(ID3Version::version3);
  EXPECT_EQ(engineErrorOf([&] { Editor().write(empty, file); }), EngineError::invalidTagData);
  EXPECT_EQ(engineErrorOf([&] { Editor().write(empty, file, folder.path() / "new" / "b.mp3"); }),
            EngineError::invalidTagData);
  const auto failing = [](platform::Bytes) -> platform::Bytes { throw std::runtime_error("no"); };
  EXPECT_THROW(write(file, {}, failing), std::runtime_error);
  EXPECT_THROW(write(file, file / "below" / "b.mp3"), platform::FileError);
  fs::create_directory(folder.path() / "folder.mp3");
  EXPECT_THROW(write(file, folder.path() / "folder.mp3"), platform::FileError);
  EXPECT_THROW(write(folder.path() / "folder.mp3"), platform::FileError);
  EXPECT_TRUE(contentsOf(file) == before);
  EXPECT_EQ(folder.entryCount(), 2);
}

TEST(Mp3File, WritesWhatARevisionMakesOfTheTag) {
  const TemporaryFolder folder;
  const fs::path file = folder.file("a.mp3", oldTagBytes + audio());
  std::string given;
  write(file, {}, [&](platform::Bytes tag) {
    given = charactersOf(tag);
    return TagBytes(3).text("TIT2", "revised").bytes();
  });
  EXPECT_EQ(given, newTagBytes);
  EXPECT_EQ(contentsOf(file), TagBytes(3).text("TIT2", "revised").characters() + audio());
}

}  // namespace

}  // namespace tests
