#include "platform/posix/DesktopPrograms.h"

namespace platform {

std::span<const DesktopProgram> desktopPrograms() {
  static constexpr auto programs = std::to_array<DesktopProgram>({
      // Without a locale that says otherwise, pbcopy takes its input for Mac OS Roman.
      {.display = nullptr, .words = {"env", "LC_ALL=en_US.UTF-8", "pbcopy"}},
  });
  return programs;
}

}  // namespace platform
