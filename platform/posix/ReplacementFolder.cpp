#include "platform/ReplacementFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>

#include "platform/FileError.h"
#include "platform/posix/SystemFiles.h"

namespace platform {

using std::filesystem::path;

ReplacementFolder::ReplacementFolder(const path& path, std::filesystem::path file) : file_(std::move(file)) {
  descriptor_ =
      Descriptor(retrying([&] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!descriptor_ && errno == EACCES) {
    isReadable_ = false;
    descriptor_ = SystemFiles::openFolderForSearch(path);
  }
  if (!descriptor_) throw FileError(file_, FileError::notWritten, errno);
}

ReplacementFolder::~ReplacementFolder() {
  try {
    synchronise();
  } catch (const FileError&) {
    // A caller that needs the result calls `synchronise` itself.
  }
}

bool ReplacementFolder::isAt(const path& path) {
  struct stat named {};
  if (::stat(path.c_str(), &named) == -1) return false;
  const struct stat* own = attributes();
  return own != nullptr && isSameFile(named, *own);
}

bool ReplacementFolder::canRemove(const struct stat& file) {
  const uid_t user = ::geteuid();
  const struct stat* own = attributes();
  return own == nullptr || (own->st_mode & S_ISVTX) == 0 || user == 0 || own->st_uid == user ||
         file.st_uid == user;
}

/// Returns the folder's attributes, or nullptr if they cannot be read.
const struct stat* ReplacementFolder::attributes() {
  if (!attributes_ && ::fstat(descriptor(), &attributes_.emplace()) == -1) attributes_.reset();
  return attributes_ ? &*attributes_ : nullptr;
}

bool ReplacementFolder::find(const std::string& name, struct stat& attributes) const {
  return ::fstatat(descriptor(), name.c_str(), &attributes, AT_SYMLINK_NOFOLLOW) == 0;
}

PrivateFolder& ReplacementFolder::privateFolder(const path& file) {
  if (!private_) private_ = std::make_unique<PrivateFolder>(*this, file);
  return *private_;
}

void ReplacementFolder::dropPrivateFolder() {
  private_.reset();
}

void ReplacementFolder::synchronise() {
  dropPrivateFolder();
  if (std::exchange(isSynchronised_, true) || !isReadable_) return;
  if (retrying([&] { return SystemFiles::synchronise(descriptor()); }) == 0) return;
  // File systems on which folders need not be synchronised report one of these errors.
  if (errno != EINVAL && errno != ENOTSUP && errno != EROFS) {
    throw FileError(file_, "was written, but its folder could not be synchronised", errno);
  }
}

namespace {

constexpr mode_t forOthers = 0077;

/// Returns a name that is most likely free; only creating the folder decides that. Its length does not depend
/// on the file's name, which may be as long as names can be.
std::string hiddenName() {
  constexpr std::string_view characters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  std::string name = ".quillmark-";
  auto chance = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  // The address of the stack differs from process to process.
  chance += reinterpret_cast<std::uintptr_t>(&chance);
  for (int i = 0; i < 6; ++i) {
    chance = chance * 6364136223846793005U + 1442695040888963407U;
    name += characters[static_cast<std::size_t>(chance >> 33) % characters.size()];
  }
  return name;
}

}  // namespace

PrivateFolder::PrivateFolder(const ReplacementFolder& parent, std::filesystem::path file)
    : parent_(parent), file_(std::move(file)) {
  constexpr int mostAttempts = 100;
  for (int attempt = 1;; ++attempt) {
    name_ = hiddenName();
    if (::mkdirat(parent_.descriptor(), name_.c_str(), 0700) == 0) break;
    if (errno != EEXIST || attempt == mostAttempts) fail();
  }
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  descriptor_ = Descriptor(retrying([&] { return ::openat(parent_.descriptor(), name_.c_str(), flags); }));
  if (!descriptor_ || ::fstat(descriptor_.get(), &attributes_) == -1) {
    const int reason = errno;
    // The folder could not be opened, so assume that it is the one just created if it belongs to the user.
    if (parent_.find(name_, attributes_) && attributes_.st_uid == ::geteuid()) remove();
    throw FileError(file_, FileError::notWritten, reason);
  }
}

PrivateFolder::~PrivateFolder() {
  removeFiles();
  struct stat found {};
  if (parent_.find(name_, found) && isSameFile(found, attributes_) && isMine_) remove();
}

/// Removes the folder if it is empty.
void PrivateFolder::remove() const {
  ::unlinkat(parent_.descriptor(), name_.c_str(), AT_REMOVEDIR);
}

void PrivateFolder::fail() const {
  throw FileError(file_, FileError::notWritten, errno);
}

void PrivateFolder::failForAnother() {
  isMine_ = false;
  throw FileError(file_, FileError::notWritten,
                  "another program has replaced the hidden folder for its new version");
}

void PrivateFolder::requireEmpty() {
  const auto isEmpty = SystemFiles::isEmpty(descriptor_.get());
  if (!isEmpty) fail();
  if (!*isEmpty) failForAnother();
}

FileHandle PrivateFolder::create(const char* name, const std::filesystem::path& file) {
  file_ = file;
  if (!std::exchange(isKnownToBeEmpty_, true)) requireEmpty();
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const int descriptor = retrying([&] { return ::openat(descriptor_.get(), name, flags, 0600); });
  if (descriptor != -1) files_.push_back(name);
  FileHandle handle(file_, descriptor);
  const struct stat& made = handle.attributes();
  const bool isOwnersAlike = made.st_uid == attributes_.st_uid && made.st_gid == attributes_.st_gid;
  // On file systems without modes, the folder has permission bits for others, and so has the file.
  const bool isClosedAlike = (attributes_.st_mode & forOthers) == 0 || (made.st_mode & forOthers) != 0;
  if (!isOwnersAlike || !isClosedAlike) failForAnother();
  return handle;
}

bool PrivateFolder::removeFiles() {
  std::erase_if(files_, [&](const char* name) { return ::unlinkat(descriptor_.get(), name, 0) == 0; });
  return files_.empty();
}

void PrivateFolder::moveUp(const char* name, const std::string& as, bool asNew) {
  const int from = descriptor_.get();
  const int to = parent_.descriptor();
  const auto replace = [&] { return ::renameat(from, name, to, as.c_str()) == 0; };
  bool isDone = asNew ? SystemFiles::renameAsNew(from, name, to, as.c_str()) : replace();
  if (!isDone && asNew && (errno == EINVAL || errno == EPERM || errno == ENOSYS || errno == ENOTSUP)) {
    // Not every file system, kernel or sandbox supports the check and the rename in one step.
    struct stat found {};
    if (parent_.find(as, found)) {
      errno = EEXIST;
    } else if (errno == ENOENT) {
      isDone = replace();
    }
  }
  if (!isDone) fail();
  std::erase(files_, name);
}

}  // namespace platform
