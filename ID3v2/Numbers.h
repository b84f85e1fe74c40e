#pragma once

#include <cstdint>

#include "platform/Bytes.h"

namespace ID3v2 {

/// The bytes, at most four, as a big-endian number.
inline std::uint32_t bigEndian(platform::ByteView bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

inline bool isSynchsafe(platform::ByteView bytes) {
  for (const std::uint8_t byte : bytes) {
    if (byte >= 0x80) return false;
  }
  return true;
}

/// The lower seven bits of each byte, at most four, as a number (ID3v2.4.0 structure §6.2).
inline std::uint32_t synchsafe(platform::ByteView bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 7 | (byte & 0x7FU);
  return value;
}

inline void appendBigEndian(platform::Bytes& bytes, std::uint32_t value) {
  for (unsigned shift = 32; shift > 0;) bytes.push_back(static_cast<std::uint8_t>(value >> (shift -= 8)));
}

}  // namespace ID3v2
