#pragma once

#include "platform/base/Bytes.h"

/// Unsynchronisation keeps players from mistaking a tag for audio (ID3v2.4.0 structure §6.1).
namespace ID3v2 {

/// Returns whether the bytes can be the result of unsynchronisation: they contain no false synchronisation,
/// and do not end in FF. Some programs set the flag, but leave the bytes unchanged.
bool isUnsynchronised(platform::ByteView bytes);

/// Returns the bytes without the zero bytes that unsynchronisation inserted.
platform::Bytes unsynchronisationUndone(platform::ByteView bytes);

}  // namespace ID3v2
