#include "platform/posix/KnownIDs.h"

#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>

namespace platform {

namespace {

constexpr std::uint32_t defaultOverflowID = 65534;

std::string contentsOf(const char* file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Returns the overflow ID in `file`, which the system shows for all IDs that the user namespace does not
/// map. Returns nothing if `map` is that of the initial namespace, which maps all IDs.
std::optional<std::uint32_t> overflowID(const char* map, const char* file) {
  std::istringstream mapped(contentsOf(map));
  std::uint64_t inside = 0;
  std::uint64_t outside = 0;
  std::uint64_t count = 0;
  constexpr std::uint64_t all = 0xFFFFFFFF;
  if (!(mapped >> inside >> outside >> count) || (inside == 0 && outside == 0 && count == all)) return {};
  std::istringstream overflow(contentsOf(file));
  std::uint32_t id = 0;
  return overflow >> id ? std::optional(id) : std::nullopt;
}

}  // namespace

/// The user's own IDs are known without asking the system.
KnownIDs knownIDs(const struct stat& file) {
  KnownIDs known{.owner = file.st_uid == ::geteuid() && file.st_uid != defaultOverflowID,
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

}  // namespace platform
