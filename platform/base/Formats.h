#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/base/Bytes.h"

/// Facts of file formats that modules need which do not know each other.
namespace platform {

/// The length in bytes of the header of an ID3v2 tag, and of its footer (ID3v2.4.0 structure §3.1, §3.4).
inline constexpr std::size_t tagHeaderSize = 10;

/// The smallest number that a synchsafe field of four bytes cannot hold: a tag takes less than 256 MiB.
inline constexpr std::uint64_t synchsafeLimit = std::uint64_t{1} << 28;

/// The zero bytes that a tag gets after its last frame where nothing else asks for another number.
inline constexpr std::size_t usualPadding = 2048;

/// A number below `synchsafeLimit`, spread over the lower seven bits of four bytes (ID3v2.4.0 structure
/// §6.2).
constexpr std::uint32_t synchsafe(std::uint32_t number) {
  return (number >> 21) << 24 | (number >> 14 & 0x7F) << 16 | (number >> 7 & 0x7F) << 8 | (number & 0x7F);
}

/// Returns the number that `synchsafe` spread. The top bit of each byte is ignored.
constexpr std::uint32_t numberFromSynchsafe(std::uint32_t spread) {
  return (spread >> 24 & 0x7F) << 21 | (spread >> 16 & 0x7F) << 14 | (spread >> 8 & 0x7F) << 7 |
         (spread & 0x7F);
}

/// Returns the size of the ID3v2 tag that starts with these bytes, header and footer included, as its header
/// claims it, whatever the version; 0 if no tag starts there, or if its header is not complete.
constexpr std::uint64_t claimedTagSize(ByteView start) {
  constexpr std::uint8_t versionWithFooter = 4;
  constexpr std::uint8_t footerFlag = 0x10;
  if (start.size() < tagHeaderSize || start[0] != 'I' || start[1] != 'D' || start[2] != '3') return 0;
  const std::uint64_t bodySize = numberFromSynchsafe(bigEndian(start.subspan(6, 4)));
  const bool hasFooter = start[3] == versionWithFooter && (start[5] & footerFlag) != 0;
  return tagHeaderSize + bodySize + (hasFooter ? tagHeaderSize : 0);
}

/// The first bytes of every JPEG file.
inline constexpr std::string_view jpegSignature = "\xFF\xD8\xFF";
/// The first bytes of every PNG file.
inline constexpr std::string_view pngSignature{"\x89PNG\r\n\x1A\n"};

}  // namespace platform
