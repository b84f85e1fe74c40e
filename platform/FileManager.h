#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// Operations on files and folders that are not open.
namespace platform::FileManager {

/// Creates every missing folder above `file`. Throws FileError, which names `file`.
void createDirectoriesAbove(const std::filesystem::path& file);

/// Returns whether the path leads to something; a link that leads nowhere counts as something.
bool exists(const std::filesystem::path& file);
/// Returns whether the path leads to a folder.
bool isFolder(const std::filesystem::path& file);

/// Returns the regular files in and below the folder whose name ends in `ending`, in any case of its letters,
/// as paths relative to the folder, in the order of their components as bytes. Leaves out names that start
/// with a dot. A link to a file counts as a file; links to folders are not followed. A folder below that
/// cannot be read is part of the result itself, so that the caller fails to open it. Throws FileError if the
/// first folder cannot be read.
std::vector<std::string> filesBelow(const std::filesystem::path& folder, std::string_view ending);

}  // namespace platform::FileManager
