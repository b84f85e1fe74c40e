#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Who may do what with a file: its permission bits, or its access-control list, which begins with the same.
class AccessControlList {
 public:
  /// The list that nothing but permission bits make.
  static AccessControlList fromMode(mode_t mode);
  /// Returns the list in the form in which Linux keeps it, or nothing if the bytes are none in that form.
  static std::optional<AccessControlList> fromAttribute(std::string_view bytes);

  /// The same rights for the same people after the file has gone to another owner, another group, or both:
  /// the former ones have entries of their own, and the members of the new group have what they had before.
  AccessControlList forOwner(uid_t former, uid_t now) const;
  AccessControlList forGroup(gid_t former, gid_t now) const;

  /// Whether permission bits can tell it.
  bool isMode() const;
  /// Returns the nine permission bits; those of the group are the mask if there is one. A mask is never
  /// empty, because Linux ignores a list whose mask is: if no entry grants anything, it is "execute".
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
    /// Of a user or a group; everybody's is all ones.
    std::uint32_t id;

    auto operator<=>(const Entry&) const = default;
  };
  static constexpr std::uint32_t noID = 0xFFFFFFFF;

  /// Nothing for a named user or group that has no entry.
  const Entry* find(Tag tag, std::uint32_t id = noID) const;
  std::uint16_t permissions(Tag tag) const;
  void set(Tag tag, std::uint32_t id, std::uint16_t permissions);
  void tidy();

  /// In the order of their tags and, among these, of their IDs. What a mask takes away is taken away here.
  std::vector<Entry> entries_;
};

}  // namespace platform
