#pragma once

#include <chrono>

#include "platform/FileHandle.h"

namespace platform {

/// How long a run waits for others before it gives up on a file.
inline constexpr std::chrono::milliseconds lockPatience{5000};

/// Locks the file, so that other runs of this program do not replace it until the handle is closed. If
/// another run holds the lock, waits at most for `patience`, and subtracts the time waited from it. Returns
/// whether it waited. Returns without a lock if the file system has none. Throws FileError if the lock cannot
/// be obtained in time.
bool lockForReplacement(const FileHandle& file, std::chrono::milliseconds& patience);

}  // namespace platform
