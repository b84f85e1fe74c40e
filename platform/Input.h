#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/base/Bytes.h"

/// What is read from its beginning to its end, whether it is a file or comes through a pipe.
namespace platform::Input {

/// The bytes of a regular file or a pipe, the first `limit` where there are more. A pipe that nobody writes
/// to is not waited for longer than a moment. Throws FileError.
Bytes contents(const std::filesystem::path& file, std::uint64_t limit);

/// The same for standard input.
Bytes contentsOfStandardInput(std::uint64_t limit);

}  // namespace platform::Input
