#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/Bytes.h"
#include "platform/FileHandle.h"

namespace QuillmarkKit {

/// Opens the file for everything that is done with it. Throws TagStoreError unless it can be opened and its
/// first bytes are those of an MP3, and platform::FileError when they cannot be read.
platform::FileHandle openMP3(const std::filesystem::path& at);
/// Throws as `openMP3` does.
void verifyMP3(const std::filesystem::path& at);

/// Whether the bytes start with an ID3v2 tag or with the eleven set bits of an MPEG audio frame.
bool looksLikeMP3(platform::ByteView data);

/// The format that the bytes start like, of those that music comes in; needs 12 bytes to tell them all.
std::optional<std::string> describeFormat(platform::ByteView data);

}  // namespace QuillmarkKit
