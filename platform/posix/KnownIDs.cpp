#include "platform/posix/FileAttributes.h"

namespace platform {

KnownIDs knownIDs(const struct stat&) {
  return {.owner = true, .group = true};
}

}  // namespace platform
