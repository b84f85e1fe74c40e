#include "quillmark/Arguments.h"

namespace quillmark {

Arguments::Arguments(Words words, const std::set<std::string_view>& valueTaking) {
  positional.reserve(words.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (!words[i].starts_with("--")) {
      positional.push_back(words[i]);
      continue;
    }
    const std::string_view name = words[i].substr(2);
    if (!valueTaking.contains(name)) {
      flags.insert(name);
      continue;
    }
    if (++i == words.size()) throw ArgumentError::missingValue(name);
    std::erase_if(options, [&](const auto& option) { return option.first == name; });
    options.emplace_back(name, words[i]);
  }
}

std::optional<std::string_view> Arguments::option(std::string_view name) const {
  for (const auto& [optionName, value] : options) {
    if (optionName == name) return value;
  }
  return std::nullopt;
}

}  // namespace quillmark
