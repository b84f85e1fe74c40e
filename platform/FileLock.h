#pragma once

#include <chrono>

#include "platform/FileHandle.h"

namespace platform {

/// How long a run waits for others before it gives up on a file.
inline constexpr std::chrono::milliseconds lockPatience{5000};

/// Keeps other runs of this program from replacing the file until the handle is closed. Waits for a run that
/// is replacing it already, at most for `patience`, which becomes shorter by that time. Returns whether it
/// waited. A file system without locks is no failure. Throws FileError if the lock cannot be obtained in
/// time.
bool lockForReplacement(const FileHandle& file, std::chrono::milliseconds& patience);

}  // namespace platform
