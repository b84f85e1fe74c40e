#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Bytes.h"

/// Base64 with the standard alphabet and "=" padding, without line breaks (RFC 4648 section 4).
namespace platform::Base64 {

std::string encode(ByteView bytes);
/// Nothing for a foreign character, a blank or missing padding.
std::optional<Bytes> decode(std::string_view text);

}  // namespace platform::Base64
