#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/base/Bytes.h"

/// Base64 with the standard alphabet and "=" padding, without line breaks (RFC 4648 section 4).
namespace platform::Base64 {

/// How a slash is written: as it is, or after a backslash, as JSON strings allow.
enum class Slash : std::uint8_t { plain, escaped };

/// Returns the largest number of characters that `encode` can write for this number of bytes.
constexpr std::size_t mostCharacters(std::size_t byteCount, Slash slash) {
  return (byteCount + 2) / 3 * (slash == Slash::escaped ? 8 : 4);
}

/// Writes the bytes in Base64 to the start of `to`, which must have room for `mostCharacters`. Returns the
/// number of characters written.
std::size_t encode(ByteView bytes, Slash slash, std::span<char> to);
/// Returns the bytes that the text encodes, or nothing if it contains any other character, such as a blank,
/// or if padding is missing.
std::optional<Bytes> decode(std::string_view text);

}  // namespace platform::Base64
