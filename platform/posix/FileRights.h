#pragma once

#include "platform/FileHandle.h"

namespace platform {

/// Gives the replacement, which must be open for writing, the rights and attributes of the original: owner
/// and group, permission bits, extended attributes and access-control list. If the user may not set the owner
/// or the group, access-control entries preserve their access instead. Never grants more access than before.
/// Throws FileError, which names the original.
void keepRights(const FileHandle& original, const FileHandle& replacement);

/// Gives the replacement the original's modification date, unless the system refuses.
void keepModificationDate(const FileHandle& original, const FileHandle& replacement);

}  // namespace platform
