#include "platform/FileRights.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FileError.h"
#include "platform/posix/AccessControlList.h"
#include "platform/posix/FileAttributes.h"
#include "platform/posix/FileTimes.h"
#include "platform/posix/KnownIDs.h"

namespace platform {

namespace {

using FileAttributes::accessControlList;

[[noreturn]] void fail(const FileHandle& original) {
  throw FileError(original.path(), FileError::notWritten, errno);
}

bool isUnsupported(int code) {
  return code == EOPNOTSUPP || code == ENOTSUP || code == ENOSYS;
}

/// Returns whether an attempt to change the owner failed because the user, or any user, may not give files
/// away here.
bool mayNotChangeOwner(int code) {
  return code == EPERM || code == EACCES || code == EINVAL || isUnsupported(code);
}

struct Kept {
  bool owner;
  bool group;
};

[[noreturn]] void failToKeep(const FileHandle& original, bool keepsOwner) {
  throw FileError(original.path(), FileError::notWritten,
                  keepsOwner ? "its group cannot be kept, nor its group's access"
                             : "its owner cannot be kept, nor its owner's access");
}

/// Gives the replacement the original's owner and group as far as the user may. Returns which of them it has.
Kept keepOwner(const FileHandle& original, const FileHandle& replacement) {
  constexpr auto same = static_cast<uid_t>(-1);
  const struct stat& wanted = original.attributes();
  const struct stat& own = replacement.attributes();
  const KnownIDs known = knownIDs(wanted);
  if (!known.owner || !known.group) failToKeep(original, known.owner);
  const Kept kept{.owner = own.st_uid == wanted.st_uid, .group = own.st_gid == wanted.st_gid};
  if (kept.owner && kept.group) return kept;
  if (::fchown(replacement.descriptor(), wanted.st_uid, wanted.st_gid) == 0) return {true, true};
  if (!mayNotChangeOwner(errno)) fail(original);
  if (kept.group) return kept;
  if (::fchown(replacement.descriptor(), same, wanted.st_gid) == 0) return {kept.owner, true};
  if (!mayNotChangeOwner(errno)) fail(original);
  return kept;
}

/// Returns the result of a call such as flistxattr, or nothing, with the reason in errno, if it fails.
template <class Call>
std::optional<std::string> answerOfUnknownSize(Call call) {
  constexpr std::size_t usualSize = 256;
  std::string answer(usualSize, '\0');
  for (;;) {
    const ssize_t filled = call(answer.data(), answer.size());
    if (filled >= 0) {
      answer.resize(static_cast<std::size_t>(filled));
      return answer;
    }
    if (errno != ERANGE) return std::nullopt;
    // If the buffer's size is 0, the calls return the size needed.
    const ssize_t size = call(nullptr, 0);
    if (size == -1) return std::nullopt;
    answer.resize(static_cast<std::size_t>(size) + usualSize);
  }
}

std::optional<std::string> attributeOf(const FileHandle& file, const char* name) {
  return answerOfUnknownSize([&](char* buffer, std::size_t size) {
    return FileAttributes::get(file.descriptor(), name, buffer, size);
  });
}

bool mayBeRefused(std::string_view name, int code) {
  return !FileAttributes::isOfUser(name) &&
         (code == EPERM || code == EACCES || code == EINVAL || isUnsupported(code));
}

/// Copies all extended attributes but the access-control list. Returns whether the original has such a list.
bool copyExtendedAttributes(const FileHandle& original, const FileHandle& replacement) {
  bool hasList = false;
  const auto names = answerOfUnknownSize([&](char* buffer, std::size_t size) {
    return FileAttributes::list(original.descriptor(), buffer, size);
  });
  if (!names && isUnsupported(errno)) return false;
  if (!names) fail(original);
  // Each name is ended by a zero byte.
  for (std::size_t at = 0; at < names->size();) {
    const char* name = names->c_str() + at;
    at += std::string_view(name).size() + 1;
    if (std::string_view(name) == accessControlList) {
      hasList = true;
      continue;
    }
    const auto value = attributeOf(original, name);
    const bool isKept = value && FileAttributes::set(replacement.descriptor(), name, *value) == 0;
    const bool isGone = !value && errno == ENODATA;
    if (!isKept && !isGone && !mayBeRefused(name, errno)) fail(original);
  }
  return hasList;
}

bool setList(const FileHandle& replacement, std::string_view bytes) {
  return FileAttributes::set(replacement.descriptor(), accessControlList, bytes) == 0;
}

/// Returns the original's access-control list as stored on disk, or nothing if it has none beside its mode.
std::optional<std::string> listOf(const FileHandle& original) {
  auto bytes = attributeOf(original, accessControlList);
  if (!bytes && errno != ENODATA && !isUnsupported(errno)) fail(original);
  return bytes;
}

/// Returns the rights that preserve access if the owner or the group could not be kept.
AccessControlList listInstead(const FileHandle& original, const FileHandle& replacement, Kept kept,
                              const std::optional<std::string>& bytes) {
  const struct stat& former = original.attributes();
  const struct stat& own = replacement.attributes();
  auto list = bytes ? AccessControlList::fromAttribute(*bytes) : AccessControlList::fromMode(former.st_mode);
  if (!list) {
    throw FileError(original.path(), FileError::notWritten, "its access-control list cannot be read");
  }
  if (!kept.owner) list = list->forOwner(former.st_uid, own.st_uid);
  if (!kept.group) list = list->forGroup(former.st_gid, own.st_gid);
  return *list;
}

}  // namespace

void keepRights(const FileHandle& original, const FileHandle& replacement) {
  const Kept kept = keepOwner(original, replacement);
  // An access-control list inherited from the folder must not grant more access.
  const int removed = FileAttributes::remove(replacement.descriptor(), accessControlList);
  if (removed == -1 && errno != ENODATA && !isUnsupported(errno)) fail(original);
  const bool hasList = copyExtendedAttributes(original, replacement);
  auto list = hasList ? listOf(original) : std::nullopt;

  mode_t mode = original.attributes().st_mode & 07777U;
  if (!kept.owner || !kept.group) {
    const AccessControlList instead = listInstead(original, replacement, kept, list);
    // Drop set-user-ID and set-group-ID: they would grant another owner's rights.
    mode = (mode & 01000U) | instead.mode();
    list = instead.isMode() ? std::nullopt : std::optional(instead.toAttribute());
    if (list && !setList(replacement, *list)) failToKeep(original, kept.owner);
  } else if (list && !setList(replacement, *list)) {
    fail(original);
  }
  // Skip the call if nothing differs: file systems without modes would refuse it.
  if ((list || (replacement.attributes().st_mode & 07777U) != mode) &&
      ::fchmod(replacement.descriptor(), mode) == -1) {
    fail(original);
  }
  FileAttributes::copyFurther(original, replacement);
}

void keepModificationDate(const FileHandle& original, const FileHandle& replacement) {
  // Set both times: some file systems ignore a call with UTIME_OMIT completely.
  const std::array<timespec, 2> times{accessTime(original.attributes()),
                                      modificationTime(original.attributes())};
  ::futimens(replacement.descriptor(), times.data());
}

}  // namespace platform
