#pragma once

#include <filesystem>

namespace ID3TagEditor {

/// Throws `invalidFileFormat` unless the text behind the last dot of the path's last component is "mp3" in
/// any letter case.
void requireMp3Extension(const std::filesystem::path& path);

}  // namespace ID3TagEditor
