#pragma once

#include <filesystem>

namespace ID3TagEditor {

/// Throws `invalidFileFormat` unless the text after the last dot in the last component of the path is "mp3"
/// in any letter case.
void requireMp3Extension(const std::filesystem::path& path);

}  // namespace ID3TagEditor
