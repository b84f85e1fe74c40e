#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>

#include "platform/base/Bytes.h"

namespace ID3v2 {

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

}  // namespace ID3v2
