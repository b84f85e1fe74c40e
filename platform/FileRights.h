#pragma once

#include "platform/FileHandle.h"

namespace platform {

/// Gives a new file, which is open for writing, what belongs to the file that it is to replace: owner and
/// group, permission bits, extended attributes and access-control list. Where the user may not give it to its
/// owner or its group, these keep the access they had by access-control entries, and nobody gets more than
/// before. Throws FileError, which names the original.
void keepRights(const FileHandle& original, const FileHandle& replacement);

/// Gives the new file the original's modification date; leaves it where the system refuses.
void keepModificationDate(const FileHandle& original, const FileHandle& replacement);

}  // namespace platform
