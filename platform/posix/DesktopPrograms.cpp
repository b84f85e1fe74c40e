#include "platform/posix/DesktopPrograms.h"

namespace platform {

std::span<const DesktopProgram> desktopPrograms() {
  static constexpr auto programs = std::to_array<DesktopProgram>({
      // If the type is given, the program does not guess it from the text.
      {.display = "WAYLAND_DISPLAY", .words = {"wl-copy", "--type", "text/plain"}},
      {.display = "DISPLAY", .words = {"xclip", "-selection", "clipboard", "-in"}},
      {.display = "DISPLAY", .words = {"xsel", "--clipboard", "--input"}},
  });
  return programs;
}

}  // namespace platform
