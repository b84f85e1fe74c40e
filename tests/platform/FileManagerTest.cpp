#include "platform/FileManager.h"

#include <gtest/gtest.h>

#include "platform/FileError.h"
#include "tests/Files.h"

namespace tests {

namespace {

namespace fs = std::filesystem;
namespace FileManager = platform::FileManager;
using platform::FileError;
using platform::FileHandle;

TEST(FileManager, WritesAsAWholeOrNotAtAll) {
  const TemporaryFolder folder;
  const auto writeText = [](const fs::path& file, std::string_view text) {
    FileManager::writeAtomically(file, [&](FileHandle& handle) { handle.write(platform::bytesOf(text)); });
  };
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
  {
    const platform::ItemReplacementDirectory directory(folder.file("a", ""));
    EXPECT_EQ(directory.path().parent_path(), fs::canonical(folder.path()));
    EXPECT_EQ(fs::status(directory.path()).permissions(), fs::perms::owner_all);
    fs::create_directories(directory.path() / "x" / "y");
  }
  EXPECT_EQ(folder.entryCount(), 1);
}

}  // namespace

}  // namespace tests
