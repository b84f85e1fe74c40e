#pragma once

#include <optional>
#include <string_view>

/// Settings that a process inherits from its parent.
namespace platform::Process {

/// Returns the value of the environment variable, which is valid until the environment changes, or nothing if
/// it is not set.
std::optional<std::string_view> environment(const char* variable);

/// Clears the bits of the file-creation mask that would deny the program access to the files and folders that
/// it creates.
void keepOwnFilesUsable();

}  // namespace platform::Process

/// Signal handling of the process.
namespace platform::Signals {

/// From now on, a write to a closed pipe or beyond a file-size limit fails with an error instead of ending
/// the process.
void reportFailedWrites();

/// From now on, SIGINT, SIGTERM, SIGHUP and SIGQUIT, unless they are ignored, are noted instead of ending the
/// process, so that the run can finish the current file and remove its temporary files.
void noteInterruptions();

/// Returns the number of the last signal that was noted, or 0.
int interruption();

/// Ends the process by the signal's default action.
[[noreturn]] void dieOf(int signal);

}  // namespace platform::Signals
