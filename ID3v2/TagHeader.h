#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

namespace ID3v2 {

using platform::tagHeaderSize;

inline constexpr std::uint8_t experimentalFlag = 0x20;

/// The header of a tag (ID3v2.2.0 §3.1, ID3v2.3.0 §3.1, ID3v2.4.0 structure §3.1).
struct TagHeader {
  /// The major version: 2, 3 or 4.
  std::uint8_t version = 3;
  bool isUnsynchronised = false;
  bool hasExtendedHeader = false;
  bool hasFooter = false;
  bool isExperimental = false;
  /// What stands between header and footer, in bytes.
  std::uint32_t bodySize = 0;

  /// From the start of the header to behind the footer.
  std::uint64_t length() const {
    return tagHeaderSize + std::uint64_t{bodySize} + (hasFooter ? tagHeaderSize : 0);
  }
};

/// Nothing where no tag of v2.2, v2.3 or v2.4 starts, of whatever revision.
std::optional<TagHeader> tagHeader(platform::ByteView bytes);

/// The length of the extended header at the front of the body of a tag whose flags claim one (ID3v2.3.0
/// §3.2, ID3v2.4.0 structure §3.2); 0 where frames follow at once in spite of the flag. Its size counts
/// itself in v2.4 and not in v2.3; either is taken in both, by what stands behind it, and 0 where that is
/// nothing.
std::size_t extendedHeaderLength(platform::ByteView body, std::uint8_t version);

}  // namespace ID3v2
