#pragma once

#include <optional>

#include "ID3v2/Tag.h"

/// Tags of other formats at the end of a file.
namespace ID3v2 {

/// The number of bytes at the end of a file that the functions below need.
inline constexpr std::size_t endSize = 128 + 32;

/// Reads the ID3v1 or ID3v1.1 tag in the last 128 bytes. Returns its non-empty fields as frames: TIT2, TPE1,
/// TALB, TYER, COMM, TRCK and TCON (the genre's name). Texts are read as Latin-1, without trailing spaces and
/// zero bytes. Returns nothing if there is no such tag.
std::optional<Tag> readID3v1(platform::ByteView end);

/// Returns whether an APE tag ends at the end of the bytes, or directly before an ID3v1 tag there.
bool hasAPETag(platform::ByteView end);

}  // namespace ID3v2
