#pragma once

#include <sys/stat.h>

namespace platform {

/// For each of a file's IDs, whether it is the real one. In a user namespace, the system shows one and the
/// same ID for all IDs that have no counterpart there.
struct KnownIDs {
  bool owner;
  bool group;
};

KnownIDs knownIDs(const struct stat& file);

}  // namespace platform
