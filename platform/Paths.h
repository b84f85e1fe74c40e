#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Returns the user's home directory: HOME if it is an absolute path, else the directory in the user
/// database, or "/" if there is none.
std::filesystem::path homeDirectory();

/// Returns the path with a leading "~" replaced by the user's home directory, or a leading "~name" by that of
/// the user of this name. Returns the path unchanged if there is no such user. A tilde anywhere else stays.
std::string expandingTilde(std::string_view path);

/// Returns the location of the file of this name: absolute, without "." and empty components. Returns the
/// name unchanged if it is empty, if the current folder no longer exists, or if the location would be too
/// long for the system.
std::filesystem::path absoluteLocation(std::string_view name);

/// Returns the location with all links resolved, or unchanged if it cannot be resolved.
std::filesystem::path realLocation(const std::filesystem::path& location);

/// Like `absoluteLocation`, for a word of the command line, in which a leading tilde is expanded.
std::filesystem::path fileLocation(std::string_view word);

}  // namespace platform

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
