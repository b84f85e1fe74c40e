#pragma once

#include "platform/base/Bytes.h"

/// The scheme that keeps players from taking a tag for audio (ID3v2.4.0 structure §6.1).
namespace ID3v2 {

/// Whether the scheme can have made these bytes: there is no false synchronisation in them, and they do not
/// end in the middle of one. Some programs set the flag for bytes that they leave as they are.
bool isUnsynchronised(platform::ByteView bytes);

/// The bytes without the zero bytes that the scheme put in.
platform::Bytes unsynchronisationUndone(platform::ByteView bytes);

}  // namespace ID3v2
