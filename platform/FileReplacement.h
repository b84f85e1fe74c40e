#pragma once

#include <filesystem>
#include <optional>

#include "platform/FileHandle.h"
#include "platform/ReplacementFolder.h"
#include "platform/ReplacementRun.h"

namespace platform {

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

  /// Makes `commit` keep the original beside the new file, under its name followed by ".orig": as a
  /// hard link if the file system supports that, else as a copy. If a file that is not empty already has that
  /// name, `commit` keeps that file instead.
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

/// Makes `contents` the contents of the file in one step. Creates the file if it does not exist; the owner,
/// mode and attributes of an existing regular file stay. Throws FileError, also for a symbolic link, which is
/// not followed. Throws FileConflict if another program changes the file at the same time. If this function
/// throws, it has not changed the file.
void replaceContents(const std::filesystem::path& file, ByteView contents);

}  // namespace platform
