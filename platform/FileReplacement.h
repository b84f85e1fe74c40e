#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/FileHandle.h"
#include "platform/PrivateFolder.h"
#include "platform/ReplacementFolder.h"

namespace platform {

/// A new file that takes another one's place in one step when it is complete. Until then, and when this
/// object goes without that, the other one is as it was, and nothing is left beside it.
///
/// Nothing is looked up by a path twice: what the original is was settled when it was opened, and everything
/// else is named by its folder, which is held open. Others may write to that folder, and may mean harm.
class FileReplacement {
 public:
  /// For a file in the place of the open `original`, which must outlive this object. `last` as for `entryOf`.
  /// Throws FileConflict when the original's name does not lead to it any more, and FileError, also when the
  /// user may not write to the original, or for a folder in which nothing can be made.
  explicit FileReplacement(FileHandle& original, std::shared_ptr<ReplacementFolder> last = nullptr);
  /// For a file at that path: a new one, or in the place of the one that is there.
  explicit FileReplacement(const std::filesystem::path& path);

  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// The new file, to be written to.
  FileHandle& file() { return *file_; }
  const std::shared_ptr<ReplacementFolder>& folder() const { return entry_.folder; }

  /// Lets the original stay beside the new file; see FileBackup.
  void keepBackup() { keepsBackup_ = true; }
  /// Gives the new file the original's modification date; leaves it where the system refuses.
  void keepModificationDate();
  /// Gives the new file what belongs to the original, waits until all of it has reached the disk, and puts it
  /// in its place. Throws FileConflict when somebody has changed, replaced, moved or deleted the original
  /// since it was opened, and FileError.
  void commit();

 private:
  void prepare();
  void requireUnchanged(bool hasSecondName) const;
  void takePlace();

  std::optional<FileHandle> ownOriginal_;
  FileHandle* original_ = nullptr;
  std::filesystem::path path_;
  FolderEntry entry_;
  PrivateFolder* temporary_ = nullptr;
  std::optional<FileHandle> file_;
  bool keepsBackup_ = false;
};

}  // namespace platform
