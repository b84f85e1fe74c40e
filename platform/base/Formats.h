#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/base/Bytes.h"

/// Facts about file formats that modules share which do not include each other.
namespace platform {

/// The length in bytes of the header of an ID3v2 tag, and of its footer (ID3v2.4.0 structure §3.1, §3.4).
inline constexpr std::size_t tagHeaderSize = 10;

/// The smallest number that a synchsafe field of four bytes cannot hold, 256 MiB. Sizes of tags are below it.
inline constexpr std::uint64_t synchsafeLimit = std::uint64_t{1} << 28;

/// The number of zero bytes after a tag's last frame, unless something requires another number.
inline constexpr std::size_t usualPadding = 2048;

/// Returns the number, which must be below `synchsafeLimit`, spread over the lower seven bits of four bytes
/// (ID3v2.4.0 structure §6.2).
constexpr std::uint32_t synchsafe(std::uint32_t number) {
  return (number >> 21) << 24 | (number >> 14 & 0x7F) << 16 | (number >> 7 & 0x7F) << 8 | (number & 0x7F);
}

/// Returns the number that `synchsafe` has spread. Ignores the top bit of each byte.
constexpr std::uint32_t numberFromSynchsafe(std::uint32_t spread) {
  return (spread >> 24 & 0x7F) << 21 | (spread >> 16 & 0x7F) << 14 | (spread >> 8 & 0x7F) << 7 |
         (spread & 0x7F);
}

/// Returns the size that the header of an ID3v2 tag of any version claims, header and footer included.
/// Returns 0 if no tag starts with these bytes, or if its header is not complete.
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

/// The bytes at an offset by which a file of some format is recognised.
struct Signature {
  std::size_t offset;
  std::string_view bytes;
  std::string_view format;
};

/// Returns the format of the first signature that the start of a file has, or an empty text.
constexpr std::string_view formatBySignature(std::string_view start, std::span<const Signature> signatures) {
  for (const auto& [offset, bytes, format] : signatures) {
    if (start.size() >= offset && start.substr(offset).starts_with(bytes)) return format;
  }
  return {};
}

}  // namespace platform
