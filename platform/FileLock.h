#pragma once

#include "platform/FileHandle.h"

namespace platform {

/// Keeps other runs of this program from replacing the file until the handle is closed: waits for one that is
/// at it already, five seconds at most. A file system without locks is no failure. Throws FileError.
void lockForReplacement(const FileHandle& file);

}  // namespace platform
