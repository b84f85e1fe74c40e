#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/base/Bytes.h"

/// Unsynchronisation keeps players from mistaking a tag for audio (ID3v2.4.0 structure §6.1).
namespace ID3v2 {

/// Returns whether the bytes can be the result of unsynchronisation: they contain no false synchronisation,
/// and do not end in FF. Some programs set the flag, but leave the bytes unchanged.
bool isUnsynchronised(platform::ByteView bytes);

/// Returns the bytes without the zero bytes that unsynchronisation inserted.
platform::Bytes unsynchronisationUndone(platform::ByteView bytes);

/// The largest factor by which a compressed frame may grow; it may always grow to `inflationFloor` bytes.
/// Real frames stay far below. Frames made to exhaust memory stay compressed.
inline constexpr std::size_t inflationLimit = 32;
inline constexpr std::size_t inflationFloor = 0x10000;

/// Returns the number of bytes to which all compressed frames of a tag of that size may inflate together.
constexpr std::size_t inflationBudget(std::size_t tagSize) {
  constexpr std::size_t most = 0x10000000;
  constexpr std::size_t least = 16 * inflationFloor;
  return std::min(most, least + 2 * std::min(tagSize, most));
}

/// Returns the contents of a zlib stream. Returns nothing if the bytes are not exactly one such stream, or if
/// it inflates to more than the limits above or `budget` bytes. Reduces `budget` by the number of inflated
/// bytes, even on failure.
std::optional<platform::Bytes> inflate(platform::ByteView bytes, std::size_t& budget);

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
