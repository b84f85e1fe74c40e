#pragma once

#include <filesystem>

/// What the program asks of the file system beyond open files.
namespace platform::FileManager {

/// Creates every missing folder above `file`. Throws FileError, which names `file`.
void createDirectoriesAbove(const std::filesystem::path& file);

}  // namespace platform::FileManager
