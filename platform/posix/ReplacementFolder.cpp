#include "platform/ReplacementFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/FileError.h"
#include "platform/PrivateFolder.h"
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

}  // namespace platform
