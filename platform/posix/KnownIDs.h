#pragma once

#include <sys/stat.h>

namespace platform {

/// Which of a file's IDs are those of its owner and group, and not one that stands for all which cannot be
/// told apart.
struct KnownIDs {
  bool owner;
  bool group;
};

KnownIDs knownIDs(const struct stat& file);

}  // namespace platform
