#pragma once

#include <optional>
#include <string_view>

#include "platform/Bytes.h"

namespace ID3v2 {

/// The content of an opaque frame whose layout has texts in it (WXXX, GEOB, SYLT, USER, OWNE, COMR, IPLS;
/// ID3v2.4.0 frames §4) with these texts in an encoding that v2.3 knows. Nothing where it knows the one that
/// they have, and where the content does not have the layout.
std::optional<platform::Bytes> withTextsOfV23(std::string_view identifier, platform::ByteView content);

}  // namespace ID3v2
