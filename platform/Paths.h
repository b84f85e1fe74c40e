#pragma once

#include <filesystem>
#include <string>
#include <string_view>

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
