#pragma once

#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/FileLock.h"
#include "platform/ReplacementFolder.h"

namespace platform {

/// A name in an open folder.
struct FolderEntry {
  /// Belongs to the run, which keeps it until it looks up the next entry.
  ReplacementFolder* folder = nullptr;
  std::string name;
  /// The attributes that the name led to when it was looked up; zero for a name that nothing had.
  struct stat attributes {};
};

/// What replacements of files in a row share: the open folder of the last one, with a hidden folder for files
/// that are not complete yet, and the first failure to wait for a folder. A run serves one thread and one
/// replacement at a time. Its destructor removes the hidden folder.
class ReplacementRun {
 public:
  ReplacementRun() = default;
  ReplacementRun(const ReplacementRun&) = delete;
  ReplacementRun& operator=(const ReplacementRun&) = delete;

  /// Locks the open file as `lockForReplacement` does, but the patience is for all attempts in a row to
  /// replace the file at one path.
  void lock(const FileHandle& file);
  /// Returns whether the last `lock` had to wait.
  bool hasWaited() const { return hasWaited_; }

  /// Returns where the open file really is: its folder and its name there, no link in between. Throws
  /// FileConflict if the file's path no longer leads to it, and FileError.
  FolderEntry entryOf(const FileHandle& file);
  /// Returns the entry for a file that is yet to be made at `path`. Throws FileError.
  FolderEntry newEntry(const std::filesystem::path& path);

  /// Removes the hidden folder and waits until every rename of the run has reached the disk. Throws FileError
  /// for the first folder that could not be waited for; it names the last file that was replaced there.
  void synchronise();

 private:
  FolderEntry takeOn(std::unique_ptr<ReplacementFolder> folder, FolderEntry entry);
  void synchroniseFolder();

  std::unique_ptr<ReplacementFolder> folder_;
  std::optional<FileError> failure_;
  std::filesystem::path lockedPath_;
  std::chrono::milliseconds patience_ = lockPatience;
  bool hasWaited_ = false;
};

}  // namespace platform
