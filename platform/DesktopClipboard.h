#pragma once

#include <string_view>

namespace platform {

/// Puts the text on the clipboard of the desktop that the process was started in, for any program to paste,
/// by way of whichever program for that is installed. Without a desktop or such a program, nothing happens.
/// Takes at most a second for each program that is tried. A write to a closed pipe must not end the process.
void putOnDesktopClipboard(std::string_view text);

}  // namespace platform
