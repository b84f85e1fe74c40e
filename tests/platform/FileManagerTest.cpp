#include "platform/FileManager.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <string>

#include "platform/FileError.h"
#include "tests/TemporaryFolder.h"

namespace tests {

namespace {

namespace fs = std::filesystem;
namespace FileManager = platform::FileManager;
using platform::FileError;
using platform::FileHandle;

mode_t modeOf(const fs::path& file) {
  struct stat attributes {};
  EXPECT_EQ(::stat(file.c_str(), &attributes), 0);
  return attributes.st_mode & 07777U;
}

void writeText(const fs::path& file, std::string_view text) {
  FileManager::writeAtomically(file, [&](FileHandle& handle) { handle.write(platform::bytesOf(text)); });
}

TEST(FileManager, ReplacesAnItemAndKeepsWhatBelongsToIt) {
  const TemporaryFolder folder;
  const fs::path file = folder.file("a", "old");
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  const bool hasAttributes = ::setxattr(file.c_str(), "user.colour", "red", 3, 0) == 0;
  const fs::path replacement = folder.file("b", "new");
  ASSERT_EQ(::chmod(replacement.c_str(), 0606), 0);

  FileManager::replaceItem(file, replacement);
  EXPECT_EQ(contentsOf(file), "new");
  EXPECT_EQ(modeOf(file), 0640U);
  EXPECT_EQ(folder.entryCount(), 1);
  if (!hasAttributes) GTEST_SKIP() << "the file system has no extended attributes";
  std::string colour(8, '\0');
  const ssize_t size = ::getxattr(file.c_str(), "user.colour", colour.data(), colour.size());
  ASSERT_GE(size, 0);
  EXPECT_EQ(colour.substr(0, static_cast<std::size_t>(size)), "red");
}

TEST(FileManager, ReplacesWhatALinkPointsTo) {
  const TemporaryFolder folder;
  fs::create_directory(folder.path() / "sub");
  const fs::path file = folder.file("sub/a", "old");
  fs::create_symlink("sub/a", folder.path() / "near");
  fs::create_symlink("near", folder.path() / "far");
  writeText(folder.path() / "far", "new");
  EXPECT_EQ(contentsOf(file), "new");
  EXPECT_TRUE(fs::is_symlink(folder.path() / "near"));
  EXPECT_TRUE(fs::is_symlink(folder.path() / "far"));
  EXPECT_TRUE(FileManager::isSameFile(folder.path() / "far", file));
  EXPECT_FALSE(FileManager::isSameFile(file, folder.path() / "missing"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path() / "sub"), {}), 1);
}

TEST(FileManager, WritesAsAWholeOrNotAtAll) {
  const TemporaryFolder folder;
  // As long as a name can be: there is no room for a longer one beside it.
  const fs::path file = folder.path() / std::string(255, 'n');
  writeText(file, "first");
  EXPECT_EQ(contentsOf(file), "first");
  const auto failing = [](FileHandle& handle) {
    handle.write(platform::bytesOf("half"));
    throw std::runtime_error("no");
  };
  EXPECT_THROW(FileManager::writeAtomically(file, failing), std::runtime_error);
  EXPECT_EQ(contentsOf(file), "first");
  EXPECT_EQ(folder.entryCount(), 1);

  fs::create_directory(folder.path() / "taken");
  EXPECT_THROW(writeText(folder.path() / "taken", "x"), FileError);
  EXPECT_THROW(writeText(folder.path() / "missing" / "a", "x"), FileError);
  EXPECT_EQ(folder.entryCount(), 2);
}

TEST(FileManager, KeepsTemporariesPrivateAndRemovesThem) {
  const TemporaryFolder folder;
  const fs::path file = folder.file("a", "");
  {
    const platform::ItemReplacementDirectory directory(file);
    EXPECT_EQ(directory.path().parent_path(), fs::canonical(folder.path()));
    EXPECT_EQ(modeOf(directory.path()), 0700U);
    fs::create_directories(directory.path() / "x" / "y");
  }
  EXPECT_EQ(folder.entryCount(), 1);
}

TEST(FileManager, SetsModificationDatesToTheNanosecond) {
  const TemporaryFolder folder;
  const fs::path file = folder.file("a", "");
  FileManager::setModificationDate(file, {.tv_sec = 1000000000, .tv_nsec = 123456789});
  const auto date = FileManager::modificationDate(file);
  ASSERT_TRUE(date);
  EXPECT_EQ(date->tv_sec, 1000000000);
  EXPECT_EQ(date->tv_nsec, 123456789);
  EXPECT_FALSE(FileManager::modificationDate(folder.path() / "missing"));
}

TEST(FileHandle, ReadsOnlyRegularFilesAndNamesTheOthers) {
  const TemporaryFolder folder;
  fs::create_directory(folder.path() / "folder");
  ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
  const auto errorOf = [](const fs::path& file) -> std::string {
    try {
      FileManager::contents(file, 10);
    } catch (const FileError& error) {
      return error.what();
    }
    return "none";
  };
  EXPECT_EQ(errorOf(folder.path() / "folder"), "folder could not be read: it is a folder.");
  EXPECT_EQ(errorOf(folder.path() / "pipe"), "pipe could not be read: it is not a regular file.");
  EXPECT_EQ(errorOf("/dev/zero"), "zero could not be read: it is not a regular file.");
  EXPECT_EQ(errorOf(folder.path() / "missing"), "missing could not be read: No such file or directory.");
}

TEST(FileHandle, TellsTheEndOfAFileByAShortCount) {
  const TemporaryFolder folder;
  FileHandle handle = FileHandle::forReading(folder.file("a", "0123456789"));
  EXPECT_EQ(handle.read(4).size(), 4U);
  EXPECT_EQ(handle.read(100).size(), 6U);
  EXPECT_TRUE(handle.read(1).empty());
  EXPECT_EQ(FileManager::contents(handle.path(), 4).size(), 4U);
  EXPECT_EQ(FileManager::contents(handle.path(), UINT64_MAX).size(), 10U);
  EXPECT_THROW(FileHandle::forWriting("/dev/full").write(platform::bytesOf("x")), FileError);
}

}  // namespace

}  // namespace tests
