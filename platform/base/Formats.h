#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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
  /// The purposes for which this signature counts, as bits.
  unsigned int purposes;
};

/// The purposes for which formats are recognised. Each has signatures of its own, because a wrong guess
/// matters differently: a picture in a tag is only named, whereas artwork is written to files.
enum FormatPurpose : unsigned int {
  /// Pictures that can be the artwork.
  artworkFormat = 1,
  /// Pictures that are named when a tag is described. Their first bytes are enough.
  describedPicture = 2,
  /// Pictures that cannot be the artwork.
  otherPicture = 4,
  /// Music files that are not MP3.
  otherMusic = 8,
};

/// All signatures. For each purpose, the first one that matches counts.
inline constexpr auto fileSignatures = std::to_array<Signature>({
    {0, jpegSignature, "JPEG", artworkFormat | describedPicture},
    {0, pngSignature, "PNG", artworkFormat},
    {0, pngSignature.substr(0, 4), "PNG", describedPicture},
    {0, "GIF8", "GIF", describedPicture | otherPicture},
    {0, "RIFF", "WebP", describedPicture},
    {0, "BM", "BMP", describedPicture | otherPicture},
    {8, "WEBP", "WebP", otherPicture},
    {8, "avif", "AVIF", otherPicture},
    {8, "heic", "HEIC", otherPicture},
    {0, {"II*\0", 4}, "TIFF", otherPicture},
    {0, {"MM\0*", 4}, "TIFF", otherPicture},
    {0, "\xFF\x0A", "JPEG XL", otherPicture},
    {4, "JXL ", "JPEG XL", otherPicture},
    {0, "<svg", "SVG", otherPicture},
    {0, "%PDF", "PDF", otherPicture},
    {4, "ftypM4A", "M4A", otherMusic},
    {4, "ftyp", "MPEG-4", otherMusic},
    {0, "fLaC", "FLAC", otherMusic},
    {0, "OggS", "Ogg", otherMusic},
    {0, "RIFF", "WAV", otherMusic},
    {0, "FORM", "AIFF", otherMusic},
    {0, "wvpk", "WavPack", otherMusic},
});

/// Returns the name of the format that the start of a file has, or an empty text if no signature for the
/// purpose matches.
constexpr std::string_view formatOf(std::string_view start, FormatPurpose purpose) {
  for (const auto& [offset, bytes, format, purposes] : fileSignatures) {
    const bool counts = (purposes & purpose) != 0 && start.size() >= offset;
    if (counts && start.substr(offset).starts_with(bytes)) return format;
  }
  return {};
}

}  // namespace platform
