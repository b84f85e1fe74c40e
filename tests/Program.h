#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdlib>
#include <optional>
#include <vector>

#include "tests/Files.h"
#include "tests/Samples.h"

namespace tests {

/// A command line and what the program does with it.
struct CommandLine {
  /// The words after the name of the program, quoted as for a shell.
  std::string words;
  std::string output;
  /// The text on standard error; if it is expected, without the name of the program in front and the line
  /// feed at its end.
  std::string error = {};
  /// The exit status, or 128 plus the signal that ended the process. By default, 1 if there is an error.
  std::optional<int> status = {};
};

/// A test of the built program in a folder of its own.
class ProgramTest : public testing::Test {
 protected:
  const TemporaryFolder folder;

  /// Runs a shell command in the folder. Returns its exit status.
  int shell(const std::string& command) const {
    return WEXITSTATUS(std::system(("cd '" + folder.path().native() + "' || exit; " + command).c_str()));
  }
  /// Runs the program in the folder, which is also its home folder. A signal ends a run that takes 20
  /// seconds. The program has no desktop unless `environment` names one.
  CommandLine run(const std::string& words, const std::string& environment = "") const {
    const TemporaryFolder streams;
    const std::string place = streams.path().native() + "/";
    const std::string prepared =
        "perl -e 'alarm 20; exec @ARGV' env -u WAYLAND_DISPLAY -u DISPLAY -u QUILLMARK_OPTIONS ";
    const int status = shell(prepared + "HOME=\"$PWD\" " + environment + " '" QUILLMARK_PROGRAM "' " + words +
                             " >" + place + "output 2>" + place + "error");
    return {words, contentsOf(place + "output"), contentsOf(place + "error"), status};
  }
  /// Runs one command line after another and checks all that they print.
  void check(const std::vector<CommandLine>& lines) const {
    for (const CommandLine& line : lines) {
      SCOPED_TRACE(line.words);
      const bool isQuiet = line.error.empty();
      const CommandLine finished = run(line.words);
      EXPECT_EQ(finished.output, line.output);
      EXPECT_EQ(finished.error, isQuiet ? "" : "quillmark: " + line.error + "\n");
      EXPECT_EQ(finished.status, line.status.value_or(isQuiet ? 0 : 1));
    }
  }
};

}  // namespace tests
