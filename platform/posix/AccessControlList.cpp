#include "platform/posix/AccessControlList.h"

#include <algorithm>
#include <cstddef>

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

}  // namespace

AccessControlList AccessControlList::fromMode(mode_t mode) {
  AccessControlList list;
  list.entries_ = {{Tag::owner, bits(mode, 6), noID},
                   {Tag::owningGroup, bits(mode, 3), noID},
                   {Tag::other, bits(mode, 0), noID}};
  return list;
}

std::optional<AccessControlList> AccessControlList::fromAttribute(std::string_view bytes) {
  if (bytes.size() < headerSize || littleEndian(bytes.substr(0, headerSize)) != version) return std::nullopt;
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

AccessControlList AccessControlList::forOwner(uid_t former, uid_t now) const {
  AccessControlList list = *this;
  list.set(Tag::user, former, permissions(Tag::owner));
  // The new owner's rights are those of the owner's entry.
  std::erase_if(list.entries_, [&](const Entry& entry) { return entry.tag == Tag::user && entry.id == now; });
  list.tidy();
  return list;
}

AccessControlList AccessControlList::forGroup(gid_t former, gid_t now) const {
  AccessControlList list = *this;
  const Entry* own = find(Tag::group, now);
  std::uint16_t had = own != nullptr ? own->permissions : permissions(Tag::other);
  if (own == nullptr) {
    // A member that is also in a listed group had the rights of that entry, which may be fewer than those of
    // others.
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

bool AccessControlList::isMode() const {
  return entries_.size() == 3;
}

mode_t AccessControlList::mode() const {
  std::uint16_t mask = 0;
  for (const Entry& entry : entries_) {
    if (entry.tag != Tag::owner && entry.tag != Tag::other) mask |= entry.permissions;
  }
  constexpr std::uint16_t execute = 1;
  if (!isMode() && mask == 0) mask = execute;
  return static_cast<mode_t>(permissions(Tag::owner) << 6 | mask << 3 | permissions(Tag::other));
}

std::string AccessControlList::toAttribute() const {
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

const AccessControlList::Entry* AccessControlList::find(Tag tag, std::uint32_t id) const {
  const auto found =
      std::ranges::find_if(entries_, [&](const Entry& entry) { return entry.tag == tag && entry.id == id; });
  return found != entries_.end() ? &*found : nullptr;
}

std::uint16_t AccessControlList::permissions(Tag tag) const {
  const Entry* entry = find(tag);
  return entry != nullptr ? entry->permissions : std::uint16_t{0};
}

void AccessControlList::set(Tag tag, std::uint32_t id, std::uint16_t permissions) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.tag == tag && entry.id == id; });
  entries_.push_back({tag, permissions, id});
}

/// Drops the entries for groups if all groups have the same permissions as others and the list can be
/// expressed as permission bits without them.
void AccessControlList::tidy() {
  const std::uint16_t everybody = permissions(Tag::other);
  const bool isEqualForAllGroups = std::ranges::all_of(entries_, [&](const Entry& entry) {
    return (entry.tag != Tag::group && entry.tag != Tag::owningGroup) || entry.permissions == everybody;
  });
  const bool hasUsers =
      std::ranges::any_of(entries_, [](const Entry& entry) { return entry.tag == Tag::user; });
  if (!isEqualForAllGroups || hasUsers) return;
  std::erase_if(entries_, [](const Entry& entry) { return entry.tag == Tag::group; });
}

}  // namespace platform
