#include "platform/FileManager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/FileError.h"

namespace platform {

using std::filesystem::path;

namespace {

constexpr const char* accessControlList = "system.posix_acl_access";

/// Where a chain of links from `file` ends; for a file that does not exist yet, its place.
path resolved(const path& file) {
  std::error_code failure;
  path real = std::filesystem::canonical(file, failure);
  if (failure == std::errc::no_such_file_or_directory) {
    const path parent = file.has_parent_path() ? file.parent_path() : ".";
    real = std::filesystem::canonical(parent, failure) / file.filename();
  }
  if (failure) throw FileError(file, FileError::notWritten, failure.value());
  return real;
}

/// Throws FileError about `item` when a system call gave -1.
void check(const path& item, ssize_t result) {
  if (result == -1) throw FileError(item, FileError::notWritten, errno);
}

bool isUnsupported(int code) {
  return code == EOPNOTSUPP || code == ENOSYS;
}

/// What a system says that does not let the user, or anybody, give files away.
bool mayNotChangeOwner(int code) {
  return code == EPERM || code == EACCES || code == EINVAL || isUnsupported(code);
}

/// The replacement gets the target's owner and group as far as the user may give them away.
bool keepsOwner(const path& target, const FileHandle& replacement, const struct stat& attributes) {
  constexpr auto same = static_cast<uid_t>(-1);
  const struct stat& own = replacement.attributes();
  if (own.st_uid == attributes.st_uid && own.st_gid == attributes.st_gid) return true;
  if (::fchown(replacement.descriptor(), attributes.st_uid, attributes.st_gid) == 0) return true;
  if (!mayNotChangeOwner(errno)) check(target, -1);
  if (::fchown(replacement.descriptor(), same, attributes.st_gid) == -1 && !mayNotChangeOwner(errno)) {
    check(target, -1);
  }
  return false;
}

void setMode(const path& target, const FileHandle& replacement, mode_t mode) {
  struct stat now {};
  check(target, ::fstat(replacement.descriptor(), &now));
  // Where files have no modes of their own, there is nothing to set and no leave to.
  if ((now.st_mode & 07777U) != mode) check(target, ::fchmod(replacement.descriptor(), mode));
}

/// What a call like listxattr gives that tells the size of its answer when it is not given room for it;
/// nothing when it fails, for the reason in errno.
template <class Call>
std::optional<std::string> answerOfUnknownSize(Call call) {
  std::string answer;
  for (;;) {
    const ssize_t size = call(nullptr, 0);
    if (size == -1) return std::nullopt;
    answer.resize(static_cast<std::size_t>(size));
    const ssize_t filled = size == 0 ? 0 : call(answer.data(), answer.size());
    if (filled >= 0) {
      answer.resize(static_cast<std::size_t>(filled));
      return answer;
    }
    // It has grown meanwhile.
    if (errno != ERANGE) return std::nullopt;
  }
}

/// Attributes that belong to the system may be out of the user's reach; the user's own, and who may use the
/// file, must not get lost.
bool mayBeRefused(std::string_view name, int code) {
  return !name.starts_with("user.") && name != accessControlList &&
         (code == EPERM || code == EACCES || code == EINVAL || isUnsupported(code));
}

void copyExtendedAttributes(const path& target, const FileHandle& replacement) {
  // A default list of the folder must not widen who may use the file.
  const int removed = ::fremovexattr(replacement.descriptor(), accessControlList);
  if (removed == -1 && errno != ENODATA && !isUnsupported(errno)) check(target, removed);

  const auto names = answerOfUnknownSize(
      [&](char* buffer, std::size_t size) { return ::listxattr(target.c_str(), buffer, size); });
  if (!names && isUnsupported(errno)) return;
  if (!names) check(target, -1);
  // Each name is ended by a zero byte.
  for (std::size_t at = 0; at < names->size();) {
    const char* name = names->c_str() + at;
    at += std::string_view(name).size() + 1;
    const auto value = answerOfUnknownSize(
        [&](char* buffer, std::size_t size) { return ::getxattr(target.c_str(), name, buffer, size); });
    const bool isKept =
        value && ::fsetxattr(replacement.descriptor(), name, value->data(), value->size(), 0) == 0;
    const bool isGone = !value && errno == ENODATA;
    if (!isKept && !isGone && !mayBeRefused(name, errno)) check(target, -1);
  }
}

}  // namespace

ItemReplacementDirectory::ItemReplacementDirectory(const std::filesystem::path& file) {
  std::filesystem::path folder = resolved(file).parent_path();
  // The name does not grow with the file's: a file whose name is as long as names can be has room beside it.
  constexpr std::string_view name = ".quillmark-XXXXXX";
  if (folder.native().size() + name.size() + file.filename().native().size() + 3 > PATH_MAX) {
    // A path that is as long as paths can be has not; by way of its open folder, it is a short one.
    folder_ = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder_ == -1) throw FileError(file, FileError::notWritten, errno);
    folder = "/proc/self/fd/" + std::to_string(folder_);
  }
  std::string path = (folder / name).native();
  const bool isMade = ::mkdtemp(path.data()) != nullptr;
  const int failure = errno;
  if (!isMade && folder_ != -1) ::close(folder_);
  if (!isMade) throw FileError(file, FileError::notWritten, failure);
  path_ = path;
}

ItemReplacementDirectory::~ItemReplacementDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
  if (folder_ != -1) ::close(folder_);
}

namespace FileManager {

void replaceItem(const path& target, const path& replacement) {
  const path real = resolved(target);
  FileHandle handle = FileHandle::forFinishing(replacement);
  struct stat attributes {};
  if (::stat(real.c_str(), &attributes) == 0) {
    // Bits that lend the owner's rights must not lend another one's.
    const mode_t kept = keepsOwner(target, handle, attributes) ? 07777U : 0777U;
    copyExtendedAttributes(real, handle);
    setMode(target, handle, attributes.st_mode & kept);
  } else if (errno != ENOENT) {
    check(target, -1);
  }
  handle.synchronise();
  handle.close();
  check(target, std::rename(replacement.c_str(), real.c_str()));
}

void writeAtomically(const path& file, const std::function<void(FileHandle&)>& writing) {
  const ItemReplacementDirectory temporary(file);
  const path replacement = temporary.path() / file.filename();
  FileHandle handle = FileHandle::forWriting(replacement);
  writing(handle);
  handle.close();
  replaceItem(file, replacement);
}

std::optional<timespec> modificationDate(const path& file) {
  struct stat attributes {};
  if (::stat(file.c_str(), &attributes) == -1) return std::nullopt;
  return attributes.st_mtim;
}

void setModificationDate(const path& file, timespec date) {
  const std::array<timespec, 2> times{{{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, date}};
  ::utimensat(AT_FDCWD, file.c_str(), times.data(), 0);
}

void createDirectoriesAbove(const path& file) {
  if (!file.has_parent_path()) return;
  std::error_code failure;
  std::filesystem::create_directories(file.parent_path(), failure);
  if (failure) throw FileError(file, FileError::notWritten, failure.value());
}

Bytes contents(const path& file, std::uint64_t limit) {
  FileHandle handle = FileHandle::forReading(file);
  return handle.read(std::min(handle.size(), limit));
}

bool isSameFile(const path& a, const path& b) {
  std::error_code ignored;
  return std::filesystem::equivalent(a, b, ignored);
}

}  // namespace FileManager

}  // namespace platform
