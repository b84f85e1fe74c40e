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
  /// The number of bytes between header and footer.
  std::uint32_t bodySize = 0;

  /// Returns the length of the whole tag in bytes, header and footer included.
  std::uint64_t length() const {
    return tagHeaderSize + std::uint64_t{bodySize} + (hasFooter ? tagHeaderSize : 0);
  }
};

/// Returns nothing unless a tag of v2.2, v2.3 or v2.4 starts there. Accepts any revision.
std::optional<TagHeader> tagHeader(platform::ByteView bytes);

/// Returns the length of the extended header at the start of the body (ID3v2.3.0 §3.2, ID3v2.4.0 structure
/// §3.2). The tag's flags must announce one. The size field counts itself in v2.4 and not in v2.3. Programs
/// confuse the two, so the length is also read in the other version's way if no frame or padding follows.
/// Returns 0 if neither length fits, or if a frame starts there in spite of the flag.
std::size_t extendedHeaderLength(platform::ByteView body, std::uint8_t version);

}  // namespace ID3v2
