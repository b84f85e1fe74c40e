#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace platform {

/// The folder that "~" stands for: the user's home directory.
std::filesystem::path homeDirectory();

/// A leading "~" alone or before a slash becomes the user's home directory, "~name" that user's, where there
/// is such a user. A tilde anywhere else stays.
std::string expandingTilde(std::string_view path);

/// The file of this name: absolute, without "." and empty components.
std::filesystem::path absoluteLocation(std::string_view name);

/// Returns the location without any link in it; the location as it is if nothing is there.
std::filesystem::path realLocation(const std::filesystem::path& location);

/// The file that a word of the command line names: the same, with a leading tilde expanded.
std::filesystem::path fileLocation(std::string_view word);

}  // namespace platform
