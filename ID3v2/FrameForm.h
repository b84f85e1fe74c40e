#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/base/Bytes.h"

namespace ID3v2 {

/// The flags of a v2.3 frame that change the form of its content (ID3v2.3.0 §3.3.1).
inline constexpr std::uint16_t compressionFlag = 0x80;
inline constexpr std::uint16_t encryptionFlag = 0x40;
inline constexpr std::uint16_t groupingFlag = 0x20;
inline constexpr std::uint16_t formFlags = compressionFlag | encryptionFlag | groupingFlag;

/// The form that a frame's flags describe, and the parts of the bytes after its header.
struct FrameForm {
  bool isCompressed = false;
  bool isEncrypted = false;
  /// All other flags at their v2.3 positions, including grouping.
  std::uint16_t otherFlags = 0;
  /// The length of the content in bytes; if it is compressed, the length before compression.
  std::optional<std::uint32_t> length;
  std::optional<std::uint8_t> method;
  std::optional<std::uint8_t> group;
  /// The bytes after length, method and group.
  platform::SharedBytes content;

  /// Returns the v2.3 flags of a frame with unchanged content.
  std::uint16_t flags() const;
  /// Returns the bytes after the header of that frame in v2.3, or nothing if v2.3 has no place for one of the
  /// parts.
  std::optional<platform::SharedBytes> inV23() const;
};

/// Returns the form of a frame from its flags and the bytes after its header, without unsynchronisation
/// (ID3v2.3.0 §3.3.1, ID3v2.4.0 structure §4.1). Returns nothing if the bytes are too short for the parts
/// that the flags announce.
std::optional<FrameForm> frameForm(std::uint16_t flags, const platform::SharedBytes& bytes,
                                   std::uint8_t version);

/// Returns the size field of a frame header of v2.3 or v2.4 (ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). The
/// size must be less than 256 MiB.
std::array<std::uint8_t, 4> sizeField(std::size_t size, std::uint8_t version);

/// Returns whether the flags mark this single frame as unsynchronised. Only v2.4 has such a flag.
constexpr bool saysUnsynchronised(std::uint16_t flags, std::uint8_t version) {
  return version == 4 && (flags & 0x02) != 0;
}

}  // namespace ID3v2
