#include "quillmark/DefaultOptions.h"

#include <algorithm>
#include <string>

#include "platform/Process.h"
#include "platform/base/Strings.h"
#include "quillmark/CLIError.h"
#include "quillmark/Hints.h"
#include "quillmark/Options.h"

namespace quillmark {

namespace {

constexpr const char* variable = "QUILLMARK_OPTIONS";

CLIError refused(std::string_view word, std::string_view reason) {
  return CLIError(std::string(variable) + ": " + std::string(word) + std::string(reason));
}

/// Returns the name of the option. Throws CLIError.
std::string_view checkedName(std::string_view word) {
  const std::string_view name = word.substr(std::min(word.find_first_not_of('-'), word.size()));
  std::vector<std::string_view> names;
  for (const CommandOptions& command : commandTable) {
    const auto value = word.starts_with("--") ? optionValue(command, word.substr(2)) : std::nullopt;
    if (value == OptionValue::none) return name;
    if (value) throw refused(word, " takes a value and cannot be a default.");
    for (const Option& option : command.options) {
      if (option.value == OptionValue::none) names.push_back(option.name);
    }
  }
  const auto nearest = nearestName(name, names);
  throw refused(word, " is no option of any command" +
                          (nearest ? "; did you mean --" + std::string(*nearest) + "?" : std::string(".")));
}

}  // namespace

std::vector<std::string_view> defaultOptions() {
  std::vector<std::string_view> names;
  const std::string_view words = platform::Process::environment(variable).value_or("");
  for (const std::string_view line : platform::Strings::split(words, '\n')) {
    for (const std::string_view part : platform::Strings::split(line, '\t')) {
      for (const std::string_view word : platform::Strings::split(part, ' '))
        names.push_back(checkedName(word));
    }
  }
  return names;
}

}  // namespace quillmark
