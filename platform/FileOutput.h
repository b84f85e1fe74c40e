#pragma once

#include <filesystem>

#include "platform/base/Bytes.h"

namespace platform {

/// Makes `contents` the contents of the file in one step. Creates the file if it does not exist; the owner,
/// mode and attributes of an existing regular file stay. Throws FileError, also for a symbolic link, which is
/// not followed. Throws FileConflict if another program changes the file at the same time. If this function
/// throws, it has not changed the file.
void replaceContents(const std::filesystem::path& file, ByteView contents);

}  // namespace platform
