#include <array>
#include <cerrno>
#include <csignal>
#include <exception>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Signals.h"
#include "platform/StandardStreams.h"
#include "quillmark/CLIError.h"
#include "quillmark/Commands.h"
#include "quillmark/Usage.h"

namespace quillmark {

namespace {

// Set once at start.
std::string usage;
Words allArguments;
Words rest;

struct CommandRow {
  std::string_view word;
  int (*run)(Words words, StandardOutput& output);
};

int printUsage(Words, StandardOutput& output) {
  output.write(usage + "\n");
  return 0;
}

constexpr std::array commands = std::to_array<CommandRow>({
    {"read", commandRead},
    {"copy", commandCopy},
    {"paste", commandPaste},
    {"apply", commandApply},
    {"set", commandSet},
    {"fields", commandFields},
    {"help", printUsage},
    {"--help", printUsage},
    {"-h", printUsage},
});

int dispatch(StandardOutput& output) {
  if (allArguments.empty()) return printUsage({}, output);
  const std::string_view word = allArguments.front();
  rest = allArguments.subspan(1);
  for (const CommandRow& command : commands) {
    if (command.word == word) return command.run(rest, output);
  }
  printError("Unknown command '" + std::string(word) + "'.\n");
  printUsage(rest, output);
  return 1;
}

/// Runs the command and says on standard error what it failed for.
int run(StandardOutput& output) {
  try {
    return dispatch(output);
  } catch (const std::exception& error) {
    output.flush();
    printError(error.what());
    return 1;
  }
}

}  // namespace

int quillmarkMain(int argumentCount, char** arguments) {
  platform::occupyMissingStreams();
  platform::Signals::reportFailedWrites();
  usage = usageText();
  // Not even the program's own path has to be there.
  allArguments = Words(arguments, static_cast<std::size_t>(argumentCount)).subspan(argumentCount > 0 ? 1 : 0);

  StandardOutput output;
  const int status = run(output);
  output.flush();
  if (const int signal = platform::Signals::interruption()) platform::Signals::dieOf(signal);
  if (output.failure() == 0) return status;
  // A reader that has seen enough is no failure to complain about.
  if (output.failure() == EPIPE) platform::Signals::dieOf(SIGPIPE);
  printError("The output could not be written: " + std::generic_category().message(output.failure()) + ".");
  return status != 0 ? status : 1;
}

}  // namespace quillmark

int main(int argumentCount, char** arguments) {
  return quillmark::quillmarkMain(argumentCount, arguments);
}
