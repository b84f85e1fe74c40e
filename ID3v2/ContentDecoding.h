#pragma once

#include <cstdint>
#include <optional>

#include "ID3v2/Identifiers.h"
#include "ID3v2/Tag.h"

namespace ID3v2 {

/// The content of a frame of any kind without frames inside, from its bytes in the given version, which any
/// compression and the like has been taken off. Opaque content comes in the form of v2.3. What does not have
/// the layout of its kind, or holds a text that its encoding does not allow, is opaque. Nothing where that
/// would not be the form of v2.3.
std::optional<Content> decodeContent(std::string_view identifier, const platform::SharedBytes& bytes,
                                     std::uint8_t version);

}  // namespace ID3v2
