#include "platform/Process.h"

#include <sys/stat.h>

#include <cstdlib>

namespace platform::Process {

std::optional<std::string_view> environment(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr ? std::optional<std::string_view>(value) : std::nullopt;
}

void keepOwnFilesUsable() {
  // The mask can only be read by setting another one.
  const mode_t mask = ::umask(S_IRWXG | S_IRWXO);
  ::umask(mask & ~static_cast<mode_t>(S_IRWXU));
}

}  // namespace platform::Process
