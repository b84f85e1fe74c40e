#pragma once

#include <optional>

#include "ID3v2/Tag.h"

/// Tags of other kinds that stand at the end of a file.
namespace ID3v2 {

/// The number of bytes at a file's end that the functions below look at.
inline constexpr std::size_t endSize = 128 + 32;

/// The ID3v1 or v1.1 tag in the last 128 bytes, as frames: TIT2, TPE1, TALB, TYER, COMM, TRCK, TCON (a name),
/// those that hold something. Texts are Latin-1, without their trailing blanks and zero bytes. Nothing where
/// there is none.
std::optional<Tag> readID3v1(platform::ByteView end);

/// Whether an APE tag ends there, in front of an ID3v1 tag or at the very end.
bool hasAPETag(platform::ByteView end);

}  // namespace ID3v2
