#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/FileHandle.h"
#include "platform/ReplacementFolder.h"
#include "platform/ReplacementRun.h"

namespace platform {

/// A backup of a file under its name followed by ".orig": a hard link if the file system supports
/// that, else a copy. The destructor removes a backup that was made, unless `keep` was called.
class FileBackup {
 public:
  /// `entry` is the place of the open `original`. The original and the folder of the entry must outlive this
  /// object.
  FileBackup(FileHandle& original, FolderEntry entry);
  ~FileBackup();
  FileBackup(const FileBackup&) = delete;
  FileBackup& operator=(const FileBackup&) = delete;

  /// Makes the backup. If a file that is not empty already has its name, keeps that file instead. A copy is
  /// put together in `temporary`. Throws FileError, also if something else has that name or if the user could
  /// not remove the backup again. Throws FileConflict if the original has changed.
  void make(PrivateFolder& temporary);
  void keep() { isMade_ = false; }
  /// Returns whether an earlier backup was kept.
  bool isEarlier() const { return isEarlier_; }
  /// Returns whether the backup is a hard link, which has changed the attributes of the original.
  bool isSecondName() const { return isMade_ && isSameFile(made_, original_.attributes()); }

 private:
  bool findEarlier();
  bool makeSecondName();
  void remove();
  void makeCopy(PrivateFolder& temporary);
  [[noreturn]] void fail() const;

  FileHandle& original_;
  FolderEntry entry_;
  std::string name_;
  struct stat made_ {};
  bool isMade_ = false;
  bool isEarlier_ = false;
};

/// A new file that takes the place of another one, the original, in one step when it is complete. If this
/// object is destroyed before that, the original is unchanged, and no temporary file is left.
///
/// Nothing is looked up by a path twice: the original is the file that was opened, and everything else is
/// named relative to its open folder. Others may write to that folder, and may mean harm.
class FileReplacement {
 public:
  /// Prepares to replace the open `original`. Both arguments must outlive this object. Throws FileConflict if
  /// the original has changed since it was opened or if its name no longer leads to it. Throws FileError,
  /// also if the user may not write to the original or cannot create files in its folder.
  FileReplacement(FileHandle& original, ReplacementRun& run);
  /// Like the constructor above, but outside of any run: the destructor tries to bring the rename to the
  /// disk.
  explicit FileReplacement(FileHandle& original);
  /// Prepares to replace the file at the path, or to create it if it does not exist. Must not be called by
  /// several threads at once: a new file's mode follows from the process's mask, which can only be read by
  /// changing it.
  explicit FileReplacement(const std::filesystem::path& path);
  /// Like the constructor above, for a file that the caller has already opened. Without an original, `commit`
  /// fails if a file has the path by then.
  FileReplacement(std::filesystem::path path, std::optional<FileHandle> original);

  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// Returns the new file, which the caller must write.
  FileHandle& file() { return *file_; }

  /// Makes `commit` keep the original beside the new file; see FileBackup.
  void keepBackup() { keepsBackup_ = true; }
  /// Gives the new file the original's modification date, unless the system refuses.
  void keepModificationDate();
  /// Copies the original's rights and attributes to the new file, waits until the new file has reached the
  /// disk, and renames it to the original's name. Throws FileConflict if the original was changed, replaced,
  /// moved or deleted since it was opened, and FileError.
  void commit();
  /// Returns whether `commit` has kept an earlier backup instead of making one.
  bool hasEarlierBackup() const { return hasEarlierBackup_; }

 private:
  void prepareFor(ReplacementRun& run);
  void requireUnchanged(bool hasSecondName) const;
  void requireUnchanged(const struct stat& found, bool hasSecondName) const;
  void takePlace();

  std::optional<ReplacementRun> ownRun_;
  std::optional<FileHandle> ownOriginal_;
  FileHandle* original_ = nullptr;
  std::filesystem::path path_;
  FolderEntry entry_;
  PrivateFolder* temporary_ = nullptr;
  std::optional<FileHandle> file_;
  bool keepsBackup_ = false;
  bool hasEarlierBackup_ = false;
};

}  // namespace platform
