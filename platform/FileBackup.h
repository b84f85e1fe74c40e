#pragma once

#include <string>

#include "platform/FileHandle.h"
#include "platform/PrivateFolder.h"
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

}  // namespace platform
