#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/Files.h"

namespace tests {

struct Finished {
  /// The exit status, or 128 plus the signal that ended the process.
  int status = 0;
  std::string output;
  std::string error;
  /// The largest amount of memory that the process used.
  long peakKilobytes = 0;
};

/// Runs the built program with these arguments in `folder`, which is also its home folder. A signal ends a
/// run that does not finish. The program has no desktop unless `environment` names one.
inline Finished quillmark(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                          const std::map<std::string, std::string>& environment = {}) {
  constexpr unsigned secondsToFinish = 20;
  const TemporaryFolder streams;
  const auto output = streams.file("output", "");
  const auto error = streams.file("error", "");
  // Otherwise the child would also write the data in this process's buffers.
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child == -1) throw std::runtime_error("fork failed");
  if (child == 0) {
    std::vector<char*> argv{const_cast<char*>(QUILLMARK_PROGRAM)};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    ::unsetenv("WAYLAND_DISPLAY");
    ::unsetenv("DISPLAY");
    ::unsetenv("QUILLMARK_OPTIONS");
    for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
    const bool ready = ::chdir(folder.c_str()) == 0 && ::setenv("HOME", folder.c_str(), 1) == 0 &&
                       ::freopen(output.c_str(), "w", stdout) != nullptr &&
                       ::freopen(error.c_str(), "w", stderr) != nullptr;
    ::alarm(secondsToFinish);
    if (ready) ::execv(QUILLMARK_PROGRAM, argv.data());
    ::_exit(127);
  }
  int status = 0;
  struct rusage usage {};
  ::wait4(child, &status, 0, &usage);
  return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          .output = contentsOf(output),
          .error = contentsOf(error),
          .peakKilobytes = usage.ru_maxrss};
}

}  // namespace tests
