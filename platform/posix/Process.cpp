#include "platform/Process.h"

#include <sys/stat.h>

#include <csignal>
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

namespace platform::Signals {

namespace {

// A signal handler can safely set a variable of this type.
volatile std::sig_atomic_t noted = 0;

void note(int signal) {
  noted = signal;
}

}  // namespace

void reportFailedWrites() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

void noteInterruptions() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    struct sigaction current {};
    if (::sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
  }
}

int interruption() {
  return noted;
}

void dieOf(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  // Reached only if the signal does not end the process by default, or is blocked.
  std::_Exit(128 + signal);
}

}  // namespace platform::Signals
