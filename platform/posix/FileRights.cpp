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

/// What a system says that does not let the user, or anybody, give files away.
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

/// Gives the replacement the original's owner and group as far as the user may.
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

/// What a call like flistxattr gives; nothing when it fails, for the reason in errno.
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
    // Without room for the answer, the calls tell its size.
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

/// All but the access-control list. Tells whether the original has one.
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

/// The original's access-control list as it is on disk; nothing where its mode says it all.
std::optional<std::string> listOf(const FileHandle& original) {
  auto bytes = attributeOf(original, accessControlList);
  if (!bytes && errno != ENODATA && !isUnsupported(errno)) fail(original);
  return bytes;
}

/// The rights that stand in for an owner or a group that cannot be kept.
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
  // A default list of the folder must not widen who may use the file.
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
  // Where files have no modes of their own, there is nothing to set and no leave to.
  if ((list || (replacement.attributes().st_mode & 07777U) != mode) &&
      ::fchmod(replacement.descriptor(), mode) == -1) {
    fail(original);
  }
  FileAttributes::copyFurther(original, replacement);
}

void keepModificationDate(const FileHandle& original, const FileHandle& replacement) {
  // Some file systems ignore UTIME_OMIT, and with it the other time.
  const std::array<timespec, 2> times{accessTime(original.attributes()),
                                      modificationTime(original.attributes())};
  ::futimens(replacement.descriptor(), times.data());
}

}  // namespace platform
