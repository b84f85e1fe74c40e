#pragma once

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
