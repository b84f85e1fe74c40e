#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/FileHandle.h"
#include "platform/PrivateFolder.h"
#include "platform/ReplacementRun.h"

namespace platform {

/// A new file that takes another one's place in one step when it is complete. Until then, and if this object
/// is destroyed without that, the other one is as it was, and nothing is left beside it.
///
/// Nothing is looked up by a path twice: the original is the file that was opened, and everything else is
/// named by its folder, which is held open. Others may write to that folder, and may mean harm.
class FileReplacement {
 public:
  /// For a file in the place of the open `original`. Both must outlive this object. Throws FileConflict if
  /// the original has changed since it was opened or its name no longer leads to it, and FileError, also if
  /// the user may not write to the original or can create nothing in its folder.
  FileReplacement(FileHandle& original, ReplacementRun& run);
  /// The same outside of any run: the destructor tries to bring the rename to the disk.
  explicit FileReplacement(FileHandle& original);
  /// For a file at that path: a new one, or in the place of the one that is there. Not for several threads at
  /// once: a new file's rights follow from the process's mask, which can only be read by changing it.
  explicit FileReplacement(const std::filesystem::path& path);
  /// The same for a file that the caller has opened; without one, for a new file, which replaces nothing.
  FileReplacement(const std::filesystem::path& path, std::optional<FileHandle> original);

  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// The new file, to be written to.
  FileHandle& file() { return *file_; }

  /// Lets the original stay beside the new file; see FileBackup.
  void keepBackup() { keepsBackup_ = true; }
  /// Gives the new file the original's modification date; leaves it where the system refuses.
  void keepModificationDate();
  /// Gives the new file what belongs to the original, waits until all of it has reached the disk, and puts it
  /// in its place. Throws FileConflict when somebody has changed, replaced, moved or deleted the original
  /// since it was opened, and FileError.
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
