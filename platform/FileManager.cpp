#include "platform/FileManager.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
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

/// The replacement gets the target's owner and group as far as the user may give them away.
bool keepsOwner(int replacement, const struct stat& target) {
  if (::fchown(replacement, target.st_uid, target.st_gid) == 0) return true;
  static_cast<void>(::fchown(replacement, static_cast<uid_t>(-1), target.st_gid) == 0);
  return false;
}

/// The names of the file's extended attributes, each ended by a zero byte.
std::string extendedAttributeNames(const path& file) {
  std::string names;
  for (;;) {
    const ssize_t size = ::listxattr(file.c_str(), nullptr, 0);
    if (size <= 0) return {};
    names.resize(static_cast<std::size_t>(size));
    const ssize_t filled = ::listxattr(file.c_str(), names.data(), names.size());
    if (filled >= 0) {
      names.resize(static_cast<std::size_t>(filled));
      return names;
    }
    if (errno != ERANGE) return {};
  }
}

/// The value of one extended attribute; nothing where it is gone or the user may not see it.
std::optional<std::string> extendedAttribute(const path& file, const char* name) {
  std::string value;
  for (;;) {
    const ssize_t size = ::getxattr(file.c_str(), name, nullptr, 0);
    if (size < 0) return std::nullopt;
    value.resize(static_cast<std::size_t>(size));
    const ssize_t filled = ::getxattr(file.c_str(), name, value.data(), value.size());
    if (filled >= 0) {
      value.resize(static_cast<std::size_t>(filled));
      return value;
    }
    if (errno != ERANGE) return std::nullopt;
  }
}

/// Attributes that belong to the system may be out of the user's reach; the user's own must not get lost.
bool mayBeRefused(std::string_view name, int code) {
  return !name.starts_with("user.") &&
         (code == EPERM || code == EACCES || code == EOPNOTSUPP || code == EINVAL);
}

void copyExtendedAttributes(const path& target, const FileHandle& replacement) {
  // A default list of the folder must not widen who may use the file.
  if (::fremovexattr(replacement.descriptor(), accessControlList) == -1 && errno != ENODATA &&
      errno != EOPNOTSUPP) {
    throw FileError(target, FileError::notWritten, errno);
  }
  const std::string names = extendedAttributeNames(target);
  for (std::size_t at = 0; at < names.size();) {
    const char* name = names.c_str() + at;
    at += std::string_view(name).size() + 1;
    const auto value = extendedAttribute(target, name);
    if (value && ::fsetxattr(replacement.descriptor(), name, value->data(), value->size(), 0) == -1 &&
        !mayBeRefused(name, errno)) {
      throw FileError(target, FileError::notWritten, errno);
    }
  }
}

}  // namespace

ItemReplacementDirectory::ItemReplacementDirectory(const std::filesystem::path& file) {
  // The name does not grow with the file's: a file whose name is as long as names can be has room beside it.
  std::string name = (resolved(file).parent_path() / ".quillmark-XXXXXX").native();
  if (::mkdtemp(name.data()) == nullptr) throw FileError(file, FileError::notWritten, errno);
  path_ = name;
}

ItemReplacementDirectory::~ItemReplacementDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

namespace FileManager {

void replaceItem(const path& target, const path& replacement) {
  const path real = resolved(target);
  const auto check = [&](int result) {
    if (result == -1) throw FileError(target, FileError::notWritten, errno);
  };
  FileHandle handle = FileHandle::forFinishing(replacement);
  struct stat attributes {};
  if (::stat(real.c_str(), &attributes) == 0) {
    // Bits that lend the owner's rights must not lend another one's.
    const mode_t kept = keepsOwner(handle.descriptor(), attributes) ? 07777U : 0777U;
    copyExtendedAttributes(real, handle);
    check(::fchmod(handle.descriptor(), attributes.st_mode & kept));
  } else if (errno != ENOENT) {
    check(-1);
  }
  handle.synchronise();
  handle.close();
  check(std::rename(replacement.c_str(), real.c_str()));
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
  const timespec times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, date};
  ::utimensat(AT_FDCWD, file.c_str(), times, 0);
}

void createDirectories(const path& directory) {
  std::error_code failure;
  std::filesystem::create_directories(directory, failure);
  if (failure) throw FileError(directory, "could not be created", failure.value());
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
