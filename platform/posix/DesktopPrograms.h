#pragma once

#include <array>
#include <span>

namespace platform {

/// A program that puts its standard input on the clipboard of a desktop.
struct DesktopProgram {
  /// The environment variable that is set if there is a desktop of the program's kind; nullptr if there
  /// always is.
  const char* display;
  /// The command line, which ends with a null pointer.
  std::array<const char*, 5> words;
};

/// Returns the programs in the order in which they are to be tried.
std::span<const DesktopProgram> desktopPrograms();

}  // namespace platform
