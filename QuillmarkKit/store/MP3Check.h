#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/Bytes.h"

namespace QuillmarkKit {

/// Throws TagStoreError unless the file can be opened and its first bytes are those of an MP3, and
/// platform::FileError when they cannot be read.
void verifyMP3(const std::filesystem::path& at);

/// Whether the bytes start with an ID3v2 tag or with the eleven set bits of an MPEG audio frame.
bool looksLikeMP3(platform::ByteView data);

/// The format that the bytes start like, of those that music comes in; needs 12 bytes to tell them all.
std::optional<std::string> describeFormat(platform::ByteView data);

}  // namespace QuillmarkKit
