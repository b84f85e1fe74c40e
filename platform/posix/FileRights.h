#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileHandle.h"

namespace platform {

/// Gives the replacement, which must be open for writing, the rights and attributes of the original: owner
/// and group, permission bits, extended attributes and access-control list. If the user may not set the owner
/// or the group, access-control entries preserve their access instead. Never grants more access than before.
/// Throws FileError, which names the original.
void keepRights(const FileHandle& original, const FileHandle& replacement);

/// Gives the replacement the original's modification date, unless the system refuses.
void keepModificationDate(const FileHandle& original, const FileHandle& replacement);

/// The permissions for a file: its permission bits, or its access-control list, which begins with the same
/// ones.
class AccessControlList {
 public:
  /// Returns the list that corresponds to the permission bits alone.
  static AccessControlList fromMode(mode_t mode);
  /// Returns the list that Linux stores as these bytes, or nothing if they are not in that form.
  static std::optional<AccessControlList> fromAttribute(std::string_view bytes);

  /// Return the list that grants the same rights after the file has changed to another owner or group. The
  /// former owner or group gets an entry of its own. Members of the new group get no more rights than they
  /// had.
  AccessControlList forOwner(uid_t former, uid_t now) const;
  AccessControlList forGroup(gid_t former, gid_t now) const;

  /// Returns whether permission bits can express the list.
  bool isMode() const;
  /// Returns the nine permission bits; those of the group are the mask if there is one. A mask is never
  /// empty, because Linux ignores a list with an empty mask: if no entry grants anything, it is "execute".
  mode_t mode() const;
  std::string toAttribute() const;

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
  const Entry* find(Tag tag, std::uint32_t id = noID) const;
  std::uint16_t permissions(Tag tag) const;
  void set(Tag tag, std::uint32_t id, std::uint16_t permissions);
  void tidy();

  /// The entries without the mask, which has already been applied to their permissions.
  std::vector<Entry> entries_;
};

}  // namespace platform
