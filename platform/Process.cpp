#include "platform/Process.h"

#include <sys/stat.h>

namespace platform::Process {

void keepOwnFilesUsable() {
  // The mask cannot be asked for without being set.
  const mode_t mask = ::umask(S_IRWXG | S_IRWXO);
  ::umask(mask & ~static_cast<mode_t>(S_IRWXU));
}

}  // namespace platform::Process
