#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <exception>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/Process.h"
#include "platform/StandardStreams.h"
#include "quillmark/Arguments.h"
#include "quillmark/Commands.h"
#include "quillmark/Console.h"
#include "quillmark/Hints.h"

namespace quillmark {

namespace {

/// A command, which either runs to its end or prepares a run that writes.
struct Command {
  std::string_view word;
  int (*run)(const Arguments& arguments, Console& console) = nullptr;
  WriteRun (*prepare)(const Arguments& arguments, Console& console) = nullptr;
};

constexpr std::array commands = std::to_array<Command>({
    {"read", commandRead},
    {"copy", commandCopy},
    {"paste", nullptr, preparePaste},
    {"apply", nullptr, prepareApply},
    {"set", nullptr, prepareSet},
});

static_assert(std::ranges::all_of(
                  commands,
                  [](std::string_view word) {
                    return std::ranges::count(commandTable, word, &CommandOptions::word) == 1;
                  },
                  &Command::word),
              "each command has a row in the table of options");

/// A command that ignores further words.
struct PlainCommand {
  std::string_view word;
  int (*run)(Console& console);
};

constexpr std::array plainCommands = std::to_array<PlainCommand>({
    {"fields", commandFields},
    {"help", commandHelp},
    {"--help", commandHelp},
    {"-h", commandHelp},
    {"--version", commandVersion},
});

int runCommand(const Command& command, const CommandOptions& row, Words words, Console& console) {
  const std::vector<std::string_view> defaults = defaultOptions();
  const Arguments arguments(words, row, defaults);
  if (arguments.has(options::help)) {
    console.write(helpText(row));
    return 0;
  }
  if (arguments.has(options::notes)) console.askForNotes();
  if (arguments.has(options::strict)) requireKnownWords(arguments, row);
  for (const std::string_view name : arguments.unknown) {
    if (console.wantsNotes()) console.printNote(unknownOption(row, name, " and is ignored"));
  }
  if (command.run != nullptr) return command.run(arguments, console);
  const WriteRun run = command.prepare(arguments, console);
  if (arguments.has(options::strict)) requireMP3Files(run.files);
  // Until here a signal may end the program at once: nothing has been written, and some inputs block.
  platform::Signals::noteInterruptions();
  return writeInto(run, arguments, console);
}

int dispatch(Words words, Console& console) {
  if (words.empty()) return commandHelp(console);
  const std::string_view word = words.front();
  for (const PlainCommand& command : plainCommands) {
    if (command.word == word) return command.run(console);
  }
  for (const Command& command : commands) {
    if (command.word == word) return runCommand(command, *commandOptions(word), words.subspan(1), console);
  }
  console.printError("Unknown command '" + std::string(word) + "'.", "\n\n");
  commandHelp(console);
  return 1;
}

/// Runs the command, prints its error, and returns the exit status.
int run(Words words, Console& console) {
  try {
    return dispatch(words, console);
  } catch (const std::exception& error) {
    console.printError(error.what());
    const std::string hint = hintOf(error);
    if (!hint.empty()) console.printNote(hint);
  }
  return 1;
}

}  // namespace

int quillmarkMain(int argumentCount, char** arguments) {
  platform::occupyMissingStreams();
  platform::Process::keepOwnFilesUsable();
  platform::Signals::reportFailedWrites();
  // The list of arguments may be empty, even without the program's own path.
  const Words words(arguments, static_cast<std::size_t>(argumentCount));

  Console console;
  const int status = run(words.subspan(argumentCount > 0 ? 1 : 0), console);
  console.flush();
  if (const int signal = platform::Signals::interruption()) platform::Signals::dieOf(signal);
  if (console.failure() == 0) return status;
  // If the reader closed the pipe, the output was not needed any more.
  if (console.failure() == EPIPE) platform::Signals::dieOf(SIGPIPE);
  console.printError(
      "The output could not be written: " + std::generic_category().message(console.failure()) + ".");
  return status != 0 ? status : 1;
}

}  // namespace quillmark

int main(int argumentCount, char** arguments) {
  return quillmark::quillmarkMain(argumentCount, arguments);
}
