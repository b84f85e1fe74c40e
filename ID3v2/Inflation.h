#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>

#include "platform/base/Bytes.h"

namespace ID3v2 {

/// A compressed frame becomes at most this many times as long, or `inflationFloor` bytes. Real ones stay far
/// below; what is made to take up memory stays compressed.
inline constexpr std::size_t inflationLimit = 32;
inline constexpr std::size_t inflationFloor = 0x10000;

/// Returns how many bytes the compressed frames of a tag of that size may inflate to altogether.
constexpr std::size_t inflationBudget(std::size_t tagSize) {
  constexpr std::size_t most = 0x10000000;
  constexpr std::size_t least = 16 * inflationFloor;
  return std::min(most, least + 2 * std::min(tagSize, most));
}

/// Returns the contents of a zlib stream, which must fill all of the bytes; nothing for anything else, and
/// for more than these limits or `budget` bytes. The budget is reduced by what was inflated, with or without
/// success.
std::optional<platform::Bytes> inflate(platform::ByteView bytes, std::size_t& budget);

}  // namespace ID3v2
