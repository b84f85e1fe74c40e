#include "platform/PasteboardFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string_view>

#include "platform/FileError.h"

namespace platform {

namespace {

constexpr std::string_view notUsed = "cannot be used";
constexpr const char* folderName = "quillmark";

bool isOwn(const struct stat& attributes) {
  return attributes.st_uid == ::geteuid();
}

/// Returns whether the folder belongs to the user or to root, and is not writable for everyone.
bool isTrusted(const struct stat& attributes) {
  return (isOwn(attributes) || attributes.st_uid == 0) && (attributes.st_mode & S_IWOTH) == 0;
}

[[noreturn]] void refuse(std::string_view reason) {
  throw FileError(PasteboardFolder::shownName, notUsed, reason);
}

[[noreturn]] void fail(std::string_view failure) {
  throw FileError(PasteboardFolder::shownName, failure, errno);
}

}  // namespace

PasteboardFolder::PasteboardFolder(const std::filesystem::path& home, Purpose purpose) {
  struct stat attributes {};
  const auto open = [&](int parent, const char* name, int flags) {
    Descriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (!folder || ::fstat(folder.get(), &attributes) == -1) fail(notUsed);
    folder_ = std::move(folder);
  };
  const auto openIn = [&](const char* name, int flags) {
    if (purpose == Purpose::write && ::mkdirat(folder_.get(), name, 0700) == -1 && errno != EEXIST)
      fail(notUsed);
    open(folder_.get(), name, flags);
  };

  open(AT_FDCWD, home.c_str(), 0);
  if (!isOwn(attributes) || !isTrusted(attributes)) refuse("the home folder is not the user's alone");
  // The user's own links are allowed here: folders like these contain no links of other users.
  for (const char* name : {".local", "state"}) {
    openIn(name, 0);
    if (!isTrusted(attributes)) refuse("a folder above it is not the user's alone");
  }
  openIn(folderName, O_NOFOLLOW);
  if (!isOwn(attributes)) refuse("it belongs to another user");
  const bool isPrivate = (attributes.st_mode & 0077) == 0;
  if (!isPrivate && purpose == Purpose::read) refuse("others can use it");
  if (!isPrivate && ::fchmod(folder_.get(), 0700) == -1) fail(notUsed);
}

FileHandle PasteboardFolder::file(const char* name, int flags) const {
  const int descriptor = ::openat(folder_.get(), name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
  if (descriptor == -1 && errno == ELOOP) refuse("a link is in its place");
  if (descriptor == -1) fail(notUsed);
  FileHandle file(shownName, descriptor);
  if (!S_ISREG(file.attributes().st_mode) || !isOwn(file.attributes())) {
    refuse("it is no file of the user's own");
  }
  return file;
}

void PasteboardFolder::rename(const char* from, const char* to) const {
  if (::renameat(folder_.get(), from, folder_.get(), to) == -1) fail(FileError::notWritten);
}

void PasteboardFolder::remove(const char* name) const {
  if (::unlinkat(folder_.get(), name, 0) == -1 && errno != ENOENT) fail(FileError::notWritten);
}

bool PasteboardFolder::mayHold(const std::filesystem::path& home, const char* name) {
  struct stat attributes {};
  const auto file = home / ".local/state" / folderName / name;
  return ::lstat(file.c_str(), &attributes) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

}  // namespace platform
