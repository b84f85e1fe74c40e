#pragma once

#include <string>

#include "platform/FileHandle.h"
#include "platform/PrivateFolder.h"
#include "platform/ReplacementRun.h"

namespace platform {

/// The file as it was, under its name followed by ".orig": a second name for it if the file system supports
/// that, else a copy. The destructor removes what was made here, unless `keep` was called.
class FileBackup {
 public:
  /// Of the open `original` at `entry`.
  FileBackup(FileHandle& original, FolderEntry entry);
  ~FileBackup();
  FileBackup(const FileBackup&) = delete;
  FileBackup& operator=(const FileBackup&) = delete;

  /// Makes the backup, unless a file that is not empty has its name already, which is kept; a copy is put
  /// together in `temporary`. Throws FileError, also if something else has that name or if the user could not
  /// remove the backup again, and FileConflict.
  void make(PrivateFolder& temporary);
  void keep() { isMade_ = false; }
  /// Returns whether an earlier backup was kept.
  bool isEarlier() const { return isEarlier_; }
  /// Whether the original has got a second name, which is a change of its attributes.
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
