#pragma once

#include <filesystem>

#include "platform/base/Bytes.h"

namespace platform {

/// Makes `contents` the contents of a file in one step: of a new file, or of the regular file that is there,
/// whose owner, mode and attributes stay. A link in the place of the file is not followed. Throws FileError,
/// and FileConflict if another program changes the file at the same time; the file is then as it was.
void replaceContents(const std::filesystem::path& file, ByteView contents);

}  // namespace platform
