#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/Bytes.h"

/// What the program asks of the file system beyond open files.
namespace platform::FileManager {

/// Creates every missing folder above `file`. Throws FileError, which names `file`.
void createDirectoriesAbove(const std::filesystem::path& file);

/// A regular file's bytes, its first `limit` where it has more. Throws FileError.
Bytes contents(const std::filesystem::path& file, std::uint64_t limit);

}  // namespace platform::FileManager
