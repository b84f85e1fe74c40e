#include "quillmark/Arguments.h"

namespace quillmark {

Arguments::Arguments(Words words, const std::set<std::string_view>& valueTaking) {
  std::size_t positionalCount = 0;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (!word.starts_with("--")) {
      words[positionalCount++] = words[i];
      continue;
    }
    const std::string_view name = word.substr(2);
    if (!valueTaking.contains(name)) {
      flags.insert(name);
      continue;
    }
    if (++i == words.size()) throw ArgumentError::missingValue(name);
    std::erase_if(options, [&](const auto& option) { return option.first == name; });
    options.emplace_back(name, words[i]);
  }
  positional = words.first(positionalCount);
}

std::optional<std::string_view> Arguments::option(std::string_view name) const {
  for (const auto& [optionName, value] : options) {
    if (optionName == name) return value;
  }
  return std::nullopt;
}

}  // namespace quillmark
