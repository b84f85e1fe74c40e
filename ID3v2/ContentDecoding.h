#pragma once

#include <cstdint>
#include <optional>

#include "ID3v2/Identifiers.h"
#include "ID3v2/Tag.h"

namespace ID3v2 {

/// Returns the content of a frame of any kind except chapters and tables of contents. `bytes` are the content
/// in the given version, without compression, encryption and grouping data. Content that does not have the
/// layout of its kind, or contains a text that is invalid in its encoding, is opaque. Opaque content is in
/// the form of v2.3; returns nothing if it cannot be converted to that form.
std::optional<Content> decodeContent(std::string_view identifier, const platform::SharedBytes& bytes,
                                     std::uint8_t version);

}  // namespace ID3v2
