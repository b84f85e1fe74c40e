#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/TemporaryFolder.h"

namespace tests {

struct Finished {
  /// The exit status, or 128 and the signal that ended the process.
  int status = 0;
  std::string output;
  std::string error;
};

/// Runs the built program with these arguments in `folder`, which is its home folder too.
inline Finished quillmark(const std::vector<std::string>& arguments, const std::filesystem::path& folder) {
  const TemporaryFolder streams;
  const auto output = streams.file("output", "");
  const auto error = streams.file("error", "");
  const pid_t child = ::fork();
  if (child == -1) throw std::runtime_error("fork failed");
  if (child == 0) {
    std::vector<char*> argv{const_cast<char*>(QUILLMARK_PROGRAM)};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const bool ready = ::chdir(folder.c_str()) == 0 && ::setenv("HOME", folder.c_str(), 1) == 0 &&
                       ::freopen(output.c_str(), "w", stdout) != nullptr &&
                       ::freopen(error.c_str(), "w", stderr) != nullptr;
    if (ready) ::execv(QUILLMARK_PROGRAM, argv.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contentsOf(output), contentsOf(error)};
}

}  // namespace tests
