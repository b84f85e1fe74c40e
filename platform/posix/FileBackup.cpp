#include "platform/FileBackup.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/FileConflict.h"
#include "platform/FileError.h"
#include "platform/FileRights.h"

namespace platform {

namespace {

constexpr const char* copyName = "old";

/// Returns whether `linkat` failed because hard links to this file, or to any file, are not possible here.
bool mayNotLink(int code) {
  return code == EPERM || code == EMLINK || code == EOPNOTSUPP || code == ENOTSUP || code == ENOSYS ||
         code == EXDEV || code == EACCES || code == EINVAL;
}

}  // namespace

FileBackup::FileBackup(FileHandle& original, FolderEntry entry)
    : original_(original), entry_(std::move(entry)), name_(entry_.name + ".orig") {
}

FileBackup::~FileBackup() {
  remove();
}

void FileBackup::remove() {
  struct stat found {};
  if (std::exchange(isMade_, false) && entry_.folder->find(name_, found) && isSameFile(found, made_)) {
    ::unlinkat(entry_.folder->descriptor(), name_.c_str(), 0);
  }
}

void FileBackup::make(PrivateFolder& temporary) {
  if (findEarlier()) return;
  if (!entry_.folder->canRemove(original_.attributes())) {
    throw FileError(original_.path(), FileError::notWritten, EPERM);
  }
  if (!makeSecondName()) makeCopy(temporary);
}

/// Returns whether an earlier backup exists. Throws FileError if something else has its name.
bool FileBackup::findEarlier() {
  struct stat found {};
  if (!entry_.folder->find(name_, found)) {
    if (errno != ENOENT) fail();
    return false;
  }
  if (!S_ISREG(found.st_mode) || found.st_size == 0) {
    throw FileError(original_.path(), "could not be backed up",
                    "something else has the name " + lastPathComponent(original_.path()) + ".orig");
  }
  return isEarlier_ = true;
}

void FileBackup::fail() const {
  throw FileError(original_.path(), "could not be backed up", errno);
}

/// Returns false if the file system does not support hard links, or shows them as different files.
bool FileBackup::makeSecondName() {
  const int folder = entry_.folder->descriptor();
  if (::linkat(folder, entry_.name.c_str(), folder, name_.c_str(), 0) == -1) {
    if (errno == EEXIST) return findEarlier();
    if (mayNotLink(errno)) return false;
    fail();
  }
  if (!entry_.folder->find(name_, made_)) fail();
  isMade_ = true;
  if (!S_ISREG(made_.st_mode)) throw FileConflict(FileConflict::Case::noFile, original_.path());
  if (isSameFile(made_, original_.attributes())) return true;
  // Either the name leads to another file by now, which is detected before the rename, or the file system
  // gives each name of a file a number of its own.
  remove();
  return false;
}

void FileBackup::makeCopy(PrivateFolder& temporary) {
  FileHandle copy = temporary.create(copyName, original_.path());
  copy.copy(original_, 0);
  keepModificationDate(original_, copy);
  keepRights(original_, copy);
  copy.synchronise();
  made_ = copy.attributes();
  copy.close();
  try {
    temporary.moveUp(copyName, name_, true);
    isMade_ = true;
  } catch (const FileError& error) {
    if (error.code() != EEXIST || !findEarlier()) throw;
  }
}

}  // namespace platform
