#pragma once

/// How the process takes signals.
namespace platform::Signals {

/// From now on a closed pipe or a file-size limit shows as the error of the write that met it.
void reportFailedWrites();

/// From now on SIGINT, SIGTERM, SIGHUP and SIGQUIT, where they are not ignored, are noted instead of ending
/// the process, so that the file in hand is finished and its temporaries are removed.
void noteInterruptions();

/// The number of the signal that was noted, or 0.
int interruption();

/// Ends the process the way the signal does when nobody handles it.
[[noreturn]] void dieOf(int signal);

}  // namespace platform::Signals
