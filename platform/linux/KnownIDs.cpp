#include "platform/posix/FileAttributes.h"

#include <unistd.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/base/Strings.h"

namespace platform {

namespace {

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

/// Returns the overflow ID in `file`, which the system shows for all IDs that the user namespace does not
/// map. Returns nothing if `map` is that of the initial namespace, which maps all IDs.
std::optional<std::int64_t> overflowID(const char* map, const char* file) {
  const std::vector<std::int64_t> mapping = numbersIn(map);
  const std::vector<std::int64_t> all{0, 0, 0xFFFFFFFF};
  if (mapping.size() != all.size() || mapping == all) return std::nullopt;
  const std::vector<std::int64_t> id = numbersIn(file);
  return id.size() == 1 ? std::optional(id.front()) : std::nullopt;
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
