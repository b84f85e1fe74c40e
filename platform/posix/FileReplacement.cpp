#include "platform/FileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "platform/FileError.h"
#include "platform/posix/FileAttributes.h"
#include "platform/posix/FileRights.h"
#include "platform/posix/SystemFiles.h"

namespace platform {

namespace {

// The names of files in the hidden folder.
constexpr const char* fileName = "new";
constexpr const char* copyName = "old";

/// Returns whether `linkat` failed because hard links to this file, or to any file, are not possible here.
bool mayNotLink(int code) {
  static constexpr std::array codes{EPERM, EMLINK, EOPNOTSUPP, ENOTSUP, ENOSYS, EXDEV, EACCES, EINVAL};
  return std::ranges::find(codes, code) != codes.end();
}

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

/// Throws FileError unless the user may write to the file. The system would not require that: write access to
/// a folder is enough to replace any file in it.
void requireWritable(const FileHandle& original, const FolderEntry& entry) {
  if (SystemFiles::mayWrite(original, entry.folder->descriptor(), entry.name)) return;
  if (errno == EACCES) throw FileError(original.path(), FileError::notWritten, "it is write-protected");
  throw FileError(original.path(), FileError::notWritten, errno);
}

bool isEqual(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool hasSameContents(const struct stat& a, const struct stat& b) {
  return a.st_size == b.st_size && isEqual(modificationTime(a), modificationTime(b));
}

std::optional<FileHandle> openIfThere(const std::filesystem::path& path) {
  try {
    return FileHandle::forReading(path);
  } catch (const FileError& error) {
    if (error.code() != ENOENT) throw;
    return std::nullopt;
  }
}

/// Opens the regular file of that name. Returns nothing if it does not exist. Throws FileError if something
/// else has the name.
std::optional<FileHandle> openTarget(const std::filesystem::path& file) {
  constexpr int flags = O_RDONLY | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
  const int descriptor = retrying([&] { return ::open(file.c_str(), flags); });
  if (descriptor == -1 && errno == ENOENT) return std::nullopt;
  if (descriptor == -1 && errno == ELOOP) {
    throw FileError(file, FileError::notWritten, "it is a symbolic link");
  }
  FileHandle handle(file, descriptor);
  const mode_t mode = handle.attributes().st_mode;
  if (S_ISDIR(mode)) throw FileError(file, FileError::notWritten, "it is a folder");
  if (!S_ISREG(mode)) throw FileError(file, FileError::notWritten, "it is not a regular file");
  return handle;
}

/// Returns the mode of a new file that replaces none.
mode_t usualMode() {
  // The mask can only be read by setting another one.
  const mode_t mask = ::umask(0077);
  ::umask(mask);
  return 0666 & ~mask;
}

}  // namespace

FileReplacement::FileReplacement(FileHandle& original, ReplacementRun& run)
    : original_(&original), path_(original.path()) {
  prepareFor(run);
}

FileReplacement::FileReplacement(FileHandle& original)
    : ownRun_(std::in_place), original_(&original), path_(original.path()) {
  prepareFor(*ownRun_);
}

FileReplacement::FileReplacement(const std::filesystem::path& path)
    : FileReplacement(path, openIfThere(path)) {
}

FileReplacement::FileReplacement(std::filesystem::path path, std::optional<FileHandle> original)
    : ownRun_(std::in_place), ownOriginal_(std::move(original)), path_(std::move(path)) {
  if (ownOriginal_) original_ = &*ownOriginal_;
  prepareFor(*ownRun_);
}

void FileReplacement::prepareFor(ReplacementRun& run) {
  if (original_ != nullptr) {
    try {
      entry_ = run.entryOf(*original_);
      requireUnchanged(entry_.attributes, false);
    } catch (const FileConflict& conflict) {
      if (conflict.value() != FileConflict::Case::changed || !run.hasWaited()) throw;
      throw FileConflict(FileConflict::Case::changedWhileWaiting, path_);
    }
    requireWritable(*original_, entry_);
  } else {
    entry_ = run.newEntry(path_);
  }
  temporary_ = &entry_.folder->privateFolder(path_);
  try {
    file_.emplace(temporary_->create(fileName, path_));
  } catch (const FileError&) {
    // The private folder may be unusable, so the next file must get another one.
    entry_.folder->dropPrivateFolder();
    throw;
  }
}

FileReplacement::~FileReplacement() {
  if (!temporary_->removeFiles()) entry_.folder->dropPrivateFolder();
}

void FileReplacement::keepModificationDate() {
  platform::keepModificationDate(*original_, *file_);
}

/// Throws FileConflict unless the original's name still leads to it, with the same contents and attributes.
/// With `hasSecondName`, the attributes may have changed, as they do if a hard link is made as a backup.
void FileReplacement::requireUnchanged(bool hasSecondName) const {
  struct stat found {};
  if (!entry_.folder->find(entry_.name, found)) {
    if (errno != ENOENT) throw FileError(path_, FileError::notWritten, errno);
    throw FileConflict(FileConflict::Case::movedOrDeleted, path_);
  }
  requireUnchanged(found, hasSecondName);
}

void FileReplacement::requireUnchanged(const struct stat& found, bool hasSecondName) const {
  if (!S_ISREG(found.st_mode)) throw FileConflict(FileConflict::Case::noFile, path_);
  const struct stat& opened = original_->attributes();
  const bool hasSameAttributes = hasSecondName || isEqual(changeTime(found), changeTime(opened));
  if (!isSameFile(found, opened) || !hasSameContents(found, opened) || !hasSameAttributes) {
    throw FileConflict(FileConflict::Case::changed, path_);
  }
}

void FileReplacement::takePlace() {
  std::optional<FileBackup> backup;
  if (original_ != nullptr) requireUnchanged(false);
  if (original_ != nullptr && keepsBackup_) {
    backup.emplace(*original_, entry_);
    backup->make(*temporary_);
    hasEarlierBackup_ = backup->isEarlier();
    requireUnchanged(backup->isSecondName());
  }
  temporary_->moveUp(fileName, entry_.name, original_ == nullptr);
  entry_.folder->noteRename(path_);
  if (backup) backup->keep();
}

void FileReplacement::commit() {
  if (original_ != nullptr) {
    keepRights(*original_, *file_);
  } else if (::fchmod(file_->descriptor(), usualMode()) == -1) {
    throw FileError(path_, FileError::notWritten, errno);
  }
  file_->synchronise();
  file_->close();
  takePlace();
}

void replaceContents(const std::filesystem::path& file, ByteView contents) {
  FileReplacement replacement(file, openTarget(file));
  replacement.file().write(contents);
  replacement.commit();
}

}  // namespace platform
