#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/base/Bytes.h"

/// Functions that read files and pipes from beginning to end.
namespace platform::Input {

/// Returns the bytes of a regular file or a pipe, at most the first `limit`. Waits only a moment for a pipe
/// that has no writer. Throws FileError.
Bytes contents(const std::filesystem::path& file, std::uint64_t limit);

/// Like `contents`, for standard input.
Bytes contentsOfStandardInput(std::uint64_t limit);

}  // namespace platform::Input
