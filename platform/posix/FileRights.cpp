#include "platform/posix/FileRights.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/FileError.h"
#include "platform/base/Strings.h"
#include "platform/posix/FileAttributes.h"

namespace platform {

namespace {

constexpr std::uint32_t version = 2;
constexpr std::size_t headerSize = 4;
constexpr std::size_t entrySize = 8;
constexpr std::uint16_t allPermissions = 7;

std::uint32_t littleEndian(std::string_view bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i > 0; --i) value = value << 8 | static_cast<std::uint8_t>(bytes[i - 1]);
  return value;
}

void appendLittleEndian(std::string& bytes, std::uint32_t value, int count) {
  for (int shift = 0; shift < 8 * count; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
}

std::uint16_t bits(mode_t mode, int shift) {
  return static_cast<std::uint16_t>(mode >> shift & allPermissions);
}

/// The permissions for a file: its permission bits, or its access-control list, which begins with the same
/// ones.
class AccessControlList {
 public:
  /// Returns the list that corresponds to the permission bits alone.
  static AccessControlList fromMode(mode_t mode) {
    AccessControlList list;
    list.entries_ = {{Tag::owner, bits(mode, 6), noID},
                     {Tag::owningGroup, bits(mode, 3), noID},
                     {Tag::other, bits(mode, 0), noID}};
    return list;
  }

  /// Returns the list that Linux stores as these bytes, or nothing if they are not in that form.
  static std::optional<AccessControlList> fromAttribute(std::string_view bytes) {
    if (bytes.size() < headerSize || littleEndian(bytes.substr(0, headerSize)) != version)
      return std::nullopt;
    AccessControlList list;
    std::uint16_t mask = allPermissions;
    for (bytes.remove_prefix(headerSize); bytes.size() >= entrySize; bytes.remove_prefix(entrySize)) {
      const auto tag = static_cast<Tag>(littleEndian(bytes.substr(0, 2)));
      const auto permissions = static_cast<std::uint16_t>(littleEndian(bytes.substr(2, 2)) & allPermissions);
      if (tag == Tag::mask) {
        mask = permissions;
      } else {
        list.entries_.push_back({tag, permissions, littleEndian(bytes.substr(4, 4))});
      }
    }
    for (Entry& entry : list.entries_) {
      if (entry.tag != Tag::owner && entry.tag != Tag::other) entry.permissions &= mask;
    }
    return bytes.empty() && list.entries_.size() >= 3 ? std::optional(std::move(list)) : std::nullopt;
  }

  /// Return the list that grants the same rights after the file has changed to another owner or group. The
  /// former owner or group gets an entry of its own. Members of the new group get no more rights than they
  /// had.
  AccessControlList forOwner(uid_t former, uid_t now) const {
    AccessControlList list = *this;
    list.set(Tag::user, former, permissions(Tag::owner));
    // The new owner's rights are those of the owner's entry.
    std::erase_if(list.entries_,
                  [&](const Entry& entry) { return entry.tag == Tag::user && entry.id == now; });
    list.tidy();
    return list;
  }

  AccessControlList forGroup(gid_t former, gid_t now) const {
    AccessControlList list = *this;
    const Entry* own = find(Tag::group, now);
    std::uint16_t had = own != nullptr ? own->permissions : permissions(Tag::other);
    if (own == nullptr) {
      // A member that is also in a listed group had the rights of that entry, which may be fewer than those
      // of others.
      for (const Entry& entry : entries_) {
        if (entry.tag == Tag::owningGroup || entry.tag == Tag::group) had &= entry.permissions;
      }
    }
    list.set(Tag::group, former, permissions(Tag::owningGroup));
    list.set(Tag::owningGroup, noID, had);
    std::erase_if(list.entries_,
                  [&](const Entry& entry) { return entry.tag == Tag::group && entry.id == now; });
    list.tidy();
    return list;
  }

  /// Returns whether permission bits can express the list.
  bool isMode() const { return entries_.size() == 3; }

  /// Returns the nine permission bits; those of the group are the mask if there is one. A mask is never
  /// empty, because Linux ignores a list with an empty mask: if no entry grants anything, it is "execute".
  mode_t mode() const {
    std::uint16_t mask = 0;
    for (const Entry& entry : entries_) {
      if (entry.tag != Tag::owner && entry.tag != Tag::other) mask |= entry.permissions;
    }
    constexpr std::uint16_t execute = 1;
    if (!isMode() && mask == 0) mask = execute;
    return static_cast<mode_t>(permissions(Tag::owner) << 6 | mask << 3 | permissions(Tag::other));
  }

  std::string toAttribute() const {
    std::vector<Entry> entries = entries_;
    if (!isMode()) entries.push_back({Tag::mask, bits(mode(), 3), noID});
    std::ranges::sort(entries, {}, [](const Entry& entry) { return std::pair(entry.tag, entry.id); });
    std::string bytes;
    appendLittleEndian(bytes, version, 4);
    for (const Entry& entry : entries) {
      appendLittleEndian(bytes, static_cast<std::uint16_t>(entry.tag), 2);
      appendLittleEndian(bytes, entry.permissions, 2);
      appendLittleEndian(bytes, entry.id, 4);
    }
    return bytes;
  }

 private:
  enum class Tag : std::uint16_t {
    owner = 0x01,
    user = 0x02,
    owningGroup = 0x04,
    group = 0x08,
    mask = 0x10,
    other = 0x20,
  };
  struct Entry {
    Tag tag;
    std::uint16_t permissions;
    /// The ID of the user or group; `noID` for other tags.
    std::uint32_t id;

    auto operator<=>(const Entry&) const = default;
  };
  static constexpr std::uint32_t noID = 0xFFFFFFFF;

  /// Returns nullptr if there is no such entry.
  const Entry* find(Tag tag, std::uint32_t id = noID) const {
    const auto found = std::ranges::find_if(
        entries_, [&](const Entry& entry) { return entry.tag == tag && entry.id == id; });
    return found != entries_.end() ? &*found : nullptr;
  }

  std::uint16_t permissions(Tag tag) const {
    const Entry* entry = find(tag);
    return entry != nullptr ? entry->permissions : std::uint16_t{0};
  }

  void set(Tag tag, std::uint32_t id, std::uint16_t permissions) {
    std::erase_if(entries_, [&](const Entry& entry) { return entry.tag == tag && entry.id == id; });
    entries_.push_back({tag, permissions, id});
  }

  /// Drops the entries for groups if all groups have the same permissions as others and the list can be
  /// expressed as permission bits without them.
  void tidy() {
    const std::uint16_t everybody = permissions(Tag::other);
    const bool isEqualForAllGroups = std::ranges::all_of(entries_, [&](const Entry& entry) {
      return (entry.tag != Tag::group && entry.tag != Tag::owningGroup) || entry.permissions == everybody;
    });
    const bool hasUsers =
        std::ranges::any_of(entries_, [](const Entry& entry) { return entry.tag == Tag::user; });
    if (!isEqualForAllGroups || hasUsers) return;
    std::erase_if(entries_, [](const Entry& entry) { return entry.tag == Tag::group; });
  }

  /// The entries without the mask, which has already been applied to their permissions.
  std::vector<Entry> entries_;
};

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

/// Whether something holds for a file's owner and for its group.
struct OwnerAndGroup {
  bool owner;
  bool group;
};

constexpr std::uint32_t defaultOverflowID = 65534;

/// Returns the numbers in the first line of a file; none if it cannot be read.
std::vector<std::int64_t> numbersIn(const char* file) {
  constexpr std::size_t longestLine = 256;
  Bytes bytes;
  try {
    bytes = FileHandle::forReading(file).read(longestLine);
  } catch (const FileError&) {
    return {};
  }
  const std::string_view text = charactersOf(bytes);
  std::vector<std::int64_t> numbers;
  for (const std::string_view word : Strings::split(text.substr(0, text.find('\n')), ' ')) {
    numbers.push_back(Strings::decimalInteger(word).value_or(0));
  }
  return numbers;
}

/// Returns the overflow ID in `file`, which Linux shows for all IDs that the user namespace does not map.
/// Returns nothing if `map` is that of the initial namespace, which maps all IDs, and on systems without
/// namespaces.
std::optional<std::int64_t> overflowID(const char* map, const char* file) {
  const std::vector<std::int64_t> mapping = numbersIn(map);
  const std::vector<std::int64_t> all{0, 0, 0xFFFFFFFF};
  if (mapping.size() != all.size() || mapping == all) return std::nullopt;
  const std::vector<std::int64_t> id = numbersIn(file);
  return id.size() == 1 ? std::optional(id.front()) : std::nullopt;
}

/// Returns for each of a file's IDs whether it is the real one. The user's own IDs are known without asking
/// the system.
OwnerAndGroup knownIDs(const struct stat& file) {
  OwnerAndGroup known{.owner = file.st_uid == ::geteuid() && file.st_uid != defaultOverflowID,
                      .group = file.st_gid == ::getegid() && file.st_gid != defaultOverflowID};
  if (!known.owner) {
    static const auto overflow = overflowID("/proc/self/uid_map", "/proc/sys/kernel/overflowuid");
    known.owner = file.st_uid != overflow;
  }
  if (!known.group) {
    static const auto overflow = overflowID("/proc/self/gid_map", "/proc/sys/kernel/overflowgid");
    known.group = file.st_gid != overflow;
  }
  return known;
}

[[noreturn]] void failToKeep(const FileHandle& original, bool keepsOwner) {
  throw FileError(original.path(), FileError::notWritten,
                  keepsOwner ? "its group cannot be kept, nor its group's access"
                             : "its owner cannot be kept, nor its owner's access");
}

/// Gives the replacement the original's owner and group as far as the user may. Returns which of them it has.
OwnerAndGroup keepOwner(const FileHandle& original, const FileHandle& replacement) {
  constexpr auto same = static_cast<uid_t>(-1);
  const struct stat& wanted = original.attributes();
  const struct stat& own = replacement.attributes();
  const OwnerAndGroup known = knownIDs(wanted);
  if (!known.owner || !known.group) failToKeep(original, known.owner);
  const OwnerAndGroup kept{.owner = own.st_uid == wanted.st_uid, .group = own.st_gid == wanted.st_gid};
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
    const bool isOwnerAndGroup = value && FileAttributes::set(replacement.descriptor(), name, *value) == 0;
    const bool isGone = !value && errno == ENODATA;
    if (!isOwnerAndGroup && !isGone && !mayBeRefused(name, errno)) fail(original);
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
AccessControlList listInstead(const FileHandle& original, const FileHandle& replacement, OwnerAndGroup kept,
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
  const OwnerAndGroup kept = keepOwner(original, replacement);
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
