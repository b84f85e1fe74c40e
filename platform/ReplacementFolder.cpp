#include "platform/ReplacementFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/FileConflict.h"
#include "platform/FileError.h"
#include "platform/PrivateFolder.h"

namespace platform {

using std::filesystem::path;

namespace {

constexpr int folderFlags = O_DIRECTORY | O_CLOEXEC;

/// The path of an open file without any link in it, where the system tells; it may be out of date already.
std::optional<path> realPath(const FileHandle& file) {
  std::array<char, PATH_MAX> buffer;
  const std::string own = "/proc/self/fd/" + std::to_string(file.descriptor());
  const ssize_t length = ::readlink(own.c_str(), buffer.data(), buffer.size());
  if (length > 0 && static_cast<std::size_t>(length) < buffer.size() && buffer[0] == '/') {
    return path(std::string(buffer.data(), static_cast<std::size_t>(length)));
  }
  std::error_code failure;
  path real = std::filesystem::canonical(file.path(), failure);
  return failure ? std::nullopt : std::optional(std::move(real));
}

path folderOf(const path& file) {
  return file.has_parent_path() ? file.parent_path() : path(".");
}

bool isHere(const FileHandle& file, const FolderEntry& entry) {
  struct stat found {};
  return entry.folder->find(entry.name, found) && isSameFile(found, file.attributes());
}

/// Whether the file's path leads into that folder. The file being there under its name is not enough: by a
/// hard link it can have the same name in several.
bool leadsTo(const FileHandle& file, const ReplacementFolder& folder) {
  struct stat named {};
  struct stat open {};
  return ::stat(folderOf(file.path()).c_str(), &named) == 0 && ::fstat(folder.descriptor(), &open) == 0 &&
         isSameFile(named, open);
}

}  // namespace

ReplacementFolder::ReplacementFolder(const path& path, std::filesystem::path file) : file_(std::move(file)) {
  descriptor_ = Descriptor(retrying([&] { return ::open(path.c_str(), O_RDONLY | folderFlags); }));
  if (!descriptor_ && errno == EACCES) {
    isReadable_ = false;
    descriptor_ = Descriptor(retrying([&] { return ::open(path.c_str(), O_PATH | folderFlags); }));
  }
  if (!descriptor_) throw FileError(file_, FileError::notWritten, errno);
}

ReplacementFolder::~ReplacementFolder() {
  try {
    synchronise();
  } catch (const FileError&) {
    // Who wants to know asks before.
  }
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
  if (retrying([&] { return ::fsync(descriptor()); }) == 0) return;
  // File systems that have nothing to do for a folder say so.
  if (errno != EINVAL && errno != ENOTSUP && errno != EROFS) {
    throw FileError(file_, "was written, but its folder could not be synchronised", errno);
  }
}

FolderEntry entryOf(const FileHandle& file, std::shared_ptr<ReplacementFolder> last) {
  FolderEntry entry{.folder = std::move(last), .name = file.path().filename().native()};
  if (entry.folder && leadsTo(file, *entry.folder) && isHere(file, entry)) return entry;
  entry.folder = std::make_shared<ReplacementFolder>(folderOf(file.path()), file.path());
  if (isHere(file, entry)) return entry;

  struct stat found {};
  if (!entry.folder->find(entry.name, found)) {
    if (errno != ENOENT) throw FileError(file.path(), FileError::notWritten, errno);
    throw FileConflict(FileConflict::Case::movedOrDeleted, file.path());
  }
  // What its path names is a link, or another file by now.
  if (const auto real = S_ISLNK(found.st_mode) ? realPath(file) : std::nullopt) {
    entry = {.folder = std::make_shared<ReplacementFolder>(folderOf(*real), file.path()),
             .name = real->filename().native()};
    if (isHere(file, entry)) return entry;
  }
  throw FileConflict(S_ISREG(found.st_mode) ? FileConflict::Case::changed : FileConflict::Case::noFile,
                     file.path());
}

}  // namespace platform
