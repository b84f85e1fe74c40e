#pragma once

#include <cstddef>
#include <optional>

#include "platform/Bytes.h"

namespace ID3v2 {

/// A compressed frame becomes at most this many times as long, or `inflationFloor` bytes. Real ones stay far
/// below; what is made to take up memory stays compressed.
inline constexpr std::size_t inflationLimit = 32;
inline constexpr std::size_t inflationFloor = 0x10000;

/// What the zlib stream, which must take up all of the bytes, holds. Nothing for anything else, and where
/// that is more than these limits or than `budget` bytes, from which it is taken.
std::optional<platform::Bytes> inflate(platform::ByteView bytes, std::size_t& budget);

}  // namespace ID3v2
