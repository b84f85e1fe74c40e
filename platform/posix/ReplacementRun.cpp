#include "platform/ReplacementRun.h"

#include <sys/file.h>

#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/FileError.h"
#include "platform/posix/SystemFiles.h"

namespace platform {

bool lockForReplacement(const FileHandle& file, std::chrono::milliseconds& patience) {
  constexpr std::chrono::milliseconds pause{10};
  bool hasWaited = false;
  while (::flock(file.descriptor(), LOCK_EX | LOCK_NB) == -1) {
    if (errno == EINTR) continue;
    if (errno != EWOULDBLOCK) break;
    if (patience < pause) {
      throw FileError(file.path(), FileError::notWritten, "another program holds it locked");
    }
    std::this_thread::sleep_for(pause);
    patience -= pause;
    hasWaited = true;
  }
  return hasWaited;
}

using std::filesystem::path;

namespace {

/// Returns the path of an open file with all links resolved, or nothing if there is none. The path may
/// already be out of date.
std::optional<path> realPath(const FileHandle& file) {
  if (auto real = SystemFiles::pathOf(file)) return real;
  std::error_code failure;
  path real = std::filesystem::canonical(file.path(), failure);
  return failure ? std::nullopt : std::optional(std::move(real));
}

path folderOf(const path& file) {
  return file.has_parent_path() ? file.parent_path() : path(".");
}

/// Returns the entry of that name; its attributes are zero if there is none.
FolderEntry entryIn(ReplacementFolder& folder, const path& name) {
  FolderEntry entry{.folder = &folder, .name = name.native()};
  if (!folder.find(entry.name, entry.attributes)) entry.attributes = {};
  return entry;
}

}  // namespace

void ReplacementRun::lock(const FileHandle& file) {
  if (file.path() != lockedPath_) {
    lockedPath_ = file.path();
    patience_ = lockPatience;
  }
  hasWaited_ = lockForReplacement(file, patience_);
}

FolderEntry ReplacementRun::entryOf(const FileHandle& file) {
  const path folder = folderOf(file.path());
  const auto leadsToFile = [&](const FolderEntry& entry) {
    return isSameFile(entry.attributes, file.attributes());
  };
  // The folder must be compared, too: with hard links, the file can have the same name in several folders.
  if (folder_ && folder_->isAt(folder)) {
    FolderEntry entry = entryIn(*folder_, file.path().filename());
    if (leadsToFile(entry)) {
      entry.name = SystemFiles::nameAsStored(file, entry.name);
      return entry;
    }
  }
  auto opened = std::make_unique<ReplacementFolder>(folder, file.path());
  FolderEntry entry{.folder = opened.get(), .name = file.path().filename().native()};
  if (!opened->find(entry.name, entry.attributes)) {
    if (errno != ENOENT) throw FileError(file.path(), FileError::notWritten, errno);
    throw FileConflict(FileConflict::Case::movedOrDeleted, file.path());
  }
  if (leadsToFile(entry)) {
    entry.name = SystemFiles::nameAsStored(file, entry.name);
    return takeOn(std::move(opened), std::move(entry));
  }

  // The name belongs to a link, or to another file by now.
  const mode_t found = entry.attributes.st_mode;
  if (const auto real = S_ISLNK(found) ? realPath(file) : std::nullopt) {
    opened = std::make_unique<ReplacementFolder>(folderOf(*real), file.path());
    entry = entryIn(*opened, real->filename());
    if (leadsToFile(entry)) return takeOn(std::move(opened), std::move(entry));
  }
  throw FileConflict(S_ISREG(found) ? FileConflict::Case::changed : FileConflict::Case::noFile, file.path());
}

FolderEntry ReplacementRun::newEntry(const path& path) {
  auto folder = std::make_unique<ReplacementFolder>(folderOf(path), path);
  return takeOn(std::move(folder), {.folder = nullptr, .name = path.filename().native()});
}

FolderEntry ReplacementRun::takeOn(std::unique_ptr<ReplacementFolder> folder, FolderEntry entry) {
  synchroniseFolder();
  folder_ = std::move(folder);
  entry.folder = folder_.get();
  return entry;
}

void ReplacementRun::synchronise() {
  synchroniseFolder();
  if (failure_) throw FileError(*failure_);
}

void ReplacementRun::synchroniseFolder() {
  try {
    if (folder_) folder_->synchronise();
  } catch (const FileError& error) {
    // The error concerns files that are already written, and must not count as a failure of the next one.
    if (!failure_) failure_ = error;
  }
}

}  // namespace platform
