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

/// What a system says that gives no file, or not this one, a second name.
bool mayNotLink(int code) {
  return code == EPERM || code == EMLINK || code == EOPNOTSUPP || code == ENOSYS;
}

}  // namespace

FileBackup::FileBackup(FileHandle& original, FolderEntry entry)
    : original_(original), entry_(std::move(entry)), name_(entry_.name + ".orig") {
}

FileBackup::~FileBackup() {
  struct stat found {};
  if (isMade_ && entry_.folder->find(name_, found) && isSameFile(found, made_)) {
    ::unlinkat(entry_.folder->descriptor(), name_.c_str(), 0);
  }
}

void FileBackup::make(PrivateFolder& temporary) {
  struct stat found {};
  if (entry_.folder->find(name_, found)) return;
  if (errno != ENOENT) fail();
  if (!makeSecondName()) makeCopy(temporary);
}

void FileBackup::fail() const {
  throw FileError(original_.path(), "could not be backed up", errno);
}

/// False where there are no second names.
bool FileBackup::makeSecondName() {
  const int folder = entry_.folder->descriptor();
  if (::linkat(folder, entry_.name.c_str(), folder, name_.c_str(), 0) == -1) {
    if (errno == EEXIST) return true;
    if (mayNotLink(errno)) return false;
    fail();
  }
  if (!entry_.folder->find(name_, made_)) fail();
  isMade_ = true;
  if (!isSameFile(made_, original_.attributes())) {
    throw FileConflict(S_ISREG(made_.st_mode) ? FileConflict::Case::changed : FileConflict::Case::noFile,
                       original_.path());
  }
  return true;
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
    // Somebody else's is there now.
    if (error.code() != EEXIST) throw;
  }
}

}  // namespace platform
