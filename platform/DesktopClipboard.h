#pragma once

#include <string_view>

namespace platform {

/// Puts the text on the clipboard of the desktop that the process was started in, so that any program can
/// paste it. Uses the first installed clipboard program that accepts the text. Does nothing without a desktop
/// or such a program. Takes at most about a second for each program that it tries. The caller must make sure
/// that a write to a closed pipe does not end the process.
void putOnDesktopClipboard(std::string_view text);

}  // namespace platform
