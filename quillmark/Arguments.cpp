#include "quillmark/Arguments.h"

namespace quillmark {

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

}  // namespace quillmark
