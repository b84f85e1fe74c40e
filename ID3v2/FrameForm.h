#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/base/Bytes.h"

namespace ID3v2 {

/// The bits of a frame's flags in v2.3 that say how its content is written (ID3v2.3.0 §3.3.1).
inline constexpr std::uint16_t compressionFlag = 0x80;
inline constexpr std::uint16_t encryptionFlag = 0x40;
inline constexpr std::uint16_t groupingFlag = 0x20;
inline constexpr std::uint16_t formFlags = compressionFlag | encryptionFlag | groupingFlag;

/// What a frame's flags say of its form, and the parts of what follows its header.
struct FrameForm {
  bool isCompressed = false;
  bool isEncrypted = false;
  /// All other flags at their v2.3 places, grouping among them.
  std::uint16_t otherFlags = 0;
  /// How long the content is, or was before it was compressed, in bytes.
  std::optional<std::uint32_t> length;
  std::optional<std::uint8_t> method;
  std::optional<std::uint8_t> group;
  /// What follows these three.
  platform::SharedBytes content;

  /// The flags in v2.3 of a frame whose content stays as it is.
  std::uint16_t flags() const;
  /// What follows the header of that frame in v2.3, or nothing where v2.3 has no place for a part.
  std::optional<platform::SharedBytes> inV23() const;
};

/// From the flags and from what follows the header in a frame of that version, unsynchronisation undone
/// (ID3v2.3.0 §3.3.1, ID3v2.4.0 structure §4.1). Nothing where a part that the flags claim is missing.
std::optional<FrameForm> frameForm(std::uint16_t flags, const platform::SharedBytes& bytes,
                                   std::uint8_t version);

/// Returns the size field of a frame header of v2.3 or v2.4 (ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). The
/// size must be less than 256 MiB.
std::array<std::uint8_t, 4> sizeField(std::size_t size, std::uint8_t version);

/// Whether the frame is unsynchronised on its own, which only v2.4 has.
constexpr bool saysUnsynchronised(std::uint16_t flags, std::uint8_t version) {
  return version == 4 && (flags & 0x02) != 0;
}

}  // namespace ID3v2
