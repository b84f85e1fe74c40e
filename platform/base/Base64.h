#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "platform/base/Bytes.h"

/// Base64 with the standard alphabet and "=" padding, without line breaks (RFC 4648 section 4).
namespace platform::Base64 {

/// Returns the largest number of characters that `encode` can write for this number of bytes.
constexpr std::size_t mostCharacters(std::size_t byteCount) {
  return (byteCount + 2) / 3 * 8;
}

/// Writes the bytes in Base64, each slash after a backslash as JSON strings allow, to the start of `to`,
/// which must have room for `mostCharacters`. Returns the number of characters written.
std::size_t encode(ByteView bytes, std::span<char> to);
/// Returns the bytes that the text encodes, or nothing if it contains any other character, such as a blank,
/// or if padding is missing.
std::optional<Bytes> decode(std::string_view text);

}  // namespace platform::Base64
