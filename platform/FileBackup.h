#pragma once

#include <string>

#include "platform/FileHandle.h"
#include "platform/PrivateFolder.h"
#include "platform/ReplacementRun.h"

namespace platform {

/// The file as it was, under its name with ".orig" behind it: a second name for it where the file system can
/// do that, else a copy. What was made here goes again with this object, unless `keep` was called.
class FileBackup {
 public:
  /// Of the open `original` at `entry`.
  FileBackup(FileHandle& original, FolderEntry entry);
  ~FileBackup();
  FileBackup(const FileBackup&) = delete;
  FileBackup& operator=(const FileBackup&) = delete;

  /// Makes it, unless something has that name already, which stays in its stead; a copy is put together in
  /// `temporary`. Throws FileError and FileConflict.
  void make(PrivateFolder& temporary);
  void keep() { isMade_ = false; }
  /// Whether the original has got a second name, which is a change of its attributes.
  bool isSecondName() const { return isMade_ && isSameFile(made_, original_.attributes()); }

 private:
  bool makeSecondName();
  void makeCopy(PrivateFolder& temporary);
  [[noreturn]] void fail() const;

  FileHandle& original_;
  FolderEntry entry_;
  std::string name_;
  struct stat made_ {};
  bool isMade_ = false;
};

}  // namespace platform
