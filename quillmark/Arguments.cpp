#include "quillmark/Arguments.h"

#include <algorithm>
#include <string>

#include "platform/Process.h"
#include "platform/base/Strings.h"
#include "quillmark/Console.h"
#include "quillmark/Hints.h"

namespace quillmark {

ArgumentError ArgumentError::missingValue(std::string_view name) {
  return ArgumentError("--" + std::string(name) + " needs a value.");
}

CLIError CLIError::unknownField(std::string_view name, std::string hint) {
  return CLIError(
      "Unknown field '" + std::string(name) + "'. Run '" + std::string(toolName) + " fields' for the list.",
      std::move(hint));
}

CLIError CLIError::unreadableArtwork(std::string_view path, std::string hint) {
  return CLIError("Could not read artwork at " + std::string(path) + " (expected a JPEG or PNG).",
                  std::move(hint));
}

CLIError CLIError::noFiles() {
  return CLIError("No files given.");
}

namespace {

constexpr const char* variable = "QUILLMARK_OPTIONS";

CLIError refused(std::string_view word, std::string_view reason) {
  return CLIError(std::string(variable) + ": " + std::string(word) + std::string(reason));
}

/// Returns the name of the option, a word of the environment variable. Throws CLIError.
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

std::string hintOf(const std::exception& error) {
  const auto* const mistake = dynamic_cast<const CLIError*>(&error);
  return mistake != nullptr ? mistake->hint() : "";
}

std::optional<OptionValue> optionValue(const CommandOptions& command, std::string_view name) {
  const auto row = std::ranges::find(command.options, name, &Option::name);
  if (row != command.options.end()) return row->value;
  if (!command.hasFieldOptions) return std::nullopt;
  for (const QuillmarkKit::TagField field : QuillmarkKit::allTagFields) {
    if (name == rawValue(field) || name == cliName(field)) return optionValue(field);
  }
  return std::nullopt;
}

Arguments::Arguments(Words words, const CommandOptions& command, std::span<const std::string_view> defaults) {
  for (const std::string_view name : defaults) {
    if (optionValue(command, name)) flags.insert(name);
  }
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (!word.starts_with("--")) {
      positional.push_back(word);
      continue;
    }
    const std::string_view name = word.substr(2);
    const auto expected = optionValue(command, name);
    if (!expected || *expected == OptionValue::none) {
      const bool isNew = flags.insert(name).second;
      if (!expected && isNew) unknown.push_back(name);
      continue;
    }
    if (++i == words.size()) throw ArgumentError::missingValue(name);
    std::erase_if(options, [&](const auto& option) { return option.first == name; });
    options.emplace_back(name, words[i]);
  }
}

std::optional<std::string_view> Arguments::value(const Option& option) const {
  for (const auto& [name, value] : options) {
    if (name == option.name) return value;
  }
  return std::nullopt;
}

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

std::vector<QuillmarkKit::TagField> fieldsInOrder(std::string_view list) {
  std::vector<QuillmarkKit::TagField> fields;
  for (const std::string_view piece : platform::Strings::split(list, ',')) {
    const std::string_view name = platform::Strings::trimmingBlanks(piece);
    const auto field = QuillmarkKit::fieldFromCliName(name);
    if (!field) throw CLIError::unknownField(name, fieldHint(name));
    if (std::ranges::count(fields, *field) == 0) fields.push_back(*field);
  }
  return fields;
}

QuillmarkKit::TagFields fieldsNamed(std::string_view list) {
  QuillmarkKit::TagFields fields;
  for (const QuillmarkKit::TagField field : fieldsInOrder(list)) fields.insert(field);
  return fields;
}

}  // namespace quillmark
