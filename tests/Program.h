#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <iomanip>
#include <map>
#include <optional>
#include <sstream>
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

/// The words after the name of the program, and what it does with them. A word that is empty or has blanks is
/// in single quotes.
struct CommandLine {
  std::string line;
  std::string output;
  /// The message without the name of the program in front and the line feed at its end.
  std::string message = {};
  /// By default, 0 without a message and 1 with one.
  std::optional<int> status = {};
};

/// A test of the built program in a folder of its own.
class ProgramTest : public testing::Test {
 protected:
  const TemporaryFolder folder;

  /// Runs the program in the folder, which is also its home folder. A signal ends a run that does not finish.
  /// The program has no desktop unless `environment` names one.
  Finished run(const std::string& line, const std::map<std::string, std::string>& environment = {}) const {
    constexpr unsigned secondsToFinish = 20;
    const TemporaryFolder streams;
    const auto output = streams.path() / "output";
    const auto error = streams.path() / "error";
    // Otherwise the child would also write the data in this process's buffers.
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == -1) throw std::runtime_error("fork failed");
    if (child == 0) {
      std::vector<std::string> words{QUILLMARK_PROGRAM};
      std::istringstream stream(line);
      for (std::string word; stream >> std::quoted(word, '\'');) words.push_back(word);
      std::vector<char*> argv;
      for (std::string& word : words) argv.push_back(word.data());
      argv.push_back(nullptr);
      for (const char* name : {"WAYLAND_DISPLAY", "DISPLAY", "QUILLMARK_OPTIONS"}) ::unsetenv(name);
      for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
      const bool ready = ::chdir(folder.path().c_str()) == 0 &&
                         ::setenv("HOME", folder.path().c_str(), 1) == 0 &&
                         ::freopen(output.c_str(), "w", stdout) != nullptr &&
                         ::freopen(error.c_str(), "w", stderr) != nullptr;
      ::alarm(secondsToFinish);
      if (ready) ::execv(QUILLMARK_PROGRAM, argv.data());
      ::_exit(127);
    }
    int status = 0;
    struct rusage usage {};
    ::wait4(child, &status, 0, &usage);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contentsOf(output),
            contentsOf(error), usage.ru_maxrss};
  }

  /// Runs one command line after another and checks all that they print.
  void check(const std::vector<CommandLine>& runs) const {
    for (const CommandLine& expected : runs) {
      SCOPED_TRACE(expected.line);
      const bool isQuiet = expected.message.empty();
      const Finished finished = run(expected.line);
      EXPECT_EQ(finished.output, expected.output);
      EXPECT_EQ(finished.error, isQuiet ? "" : "quillmark: " + expected.message + "\n");
      EXPECT_EQ(finished.status, expected.status.value_or(isQuiet ? 0 : 1));
    }
  }
};

}  // namespace tests
