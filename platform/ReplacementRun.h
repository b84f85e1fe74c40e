#pragma once

#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/ReplacementFolder.h"

namespace platform {

/// How long a run waits for others before it gives up on a file.
inline constexpr std::chrono::milliseconds lockPatience{5000};

/// Locks the file, so that other runs of this program do not replace it until the handle is closed. If
/// another run holds the lock, waits at most for `patience`, and subtracts the time waited from it. Returns
/// whether it waited. Returns without a lock if the file system has none. Throws FileError if the lock cannot
/// be obtained in time.
bool lockForReplacement(const FileHandle& file, std::chrono::milliseconds& patience);

/// A name in an open folder.
struct FolderEntry {
  /// Belongs to the run, which keeps it until it looks up the next entry.
  ReplacementFolder* folder = nullptr;
  std::string name;
  /// The attributes of the file that had the name when it was looked up; zero if there was none.
  struct stat attributes {};
};

/// State that replacements of files in a row share: the open folder of the last one, with a hidden folder for
/// files that are not complete yet, and the first error in synchronising a folder. A run serves one thread
/// and one replacement at a time. The destructor removes the hidden folder.
class ReplacementRun {
 public:
  ReplacementRun() = default;
  ReplacementRun(const ReplacementRun&) = delete;
  ReplacementRun& operator=(const ReplacementRun&) = delete;

  /// Locks the open file as `lockForReplacement` does, but all attempts in a row to replace the file at one
  /// path share the time to wait.
  void lock(const FileHandle& file);
  /// Returns whether the last `lock` had to wait.
  bool hasWaited() const { return hasWaited_; }

  /// Returns the real place of the open file: its folder, and its name there, with links resolved. Throws
  /// FileConflict if the file's path no longer leads to it, and FileError.
  FolderEntry entryOf(const FileHandle& file);
  /// Returns the entry for a file that is to be created at `path`. Throws FileError.
  FolderEntry newEntry(const std::filesystem::path& path);

  /// Removes the hidden folder and waits until every rename of the run has reached the disk. Throws FileError
  /// for the first folder that could not be synchronised; it names the last file replaced there.
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
