#include "quillmark/UnknownOptions.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace quillmark {

namespace {

/// How many bytes must be put in, taken out or replaced to make one word of the other.
std::size_t editDistance(std::string_view a, std::string_view b) {
  // The distances from the part of `a` seen so far to each beginning of `b`.
  std::vector<std::size_t> distances(b.size() + 1);
  std::iota(distances.begin(), distances.end(), std::size_t{0});
  for (const char character : a) {
    std::size_t diagonal = distances[0]++;
    for (std::size_t i = 0; i < b.size(); ++i) {
      const std::size_t replaced = diagonal + (character == b[i] ? 0 : 1);
      diagonal = distances[i + 1];
      distances[i + 1] = std::min({replaced, distances[i] + 1, diagonal + 1});
    }
  }
  return distances.back();
}

std::vector<std::string_view> optionNames(const CommandOptions& command) {
  std::vector<std::string_view> names;
  for (const Option& option : command.options) names.push_back(option.name);
  if (!command.hasFieldOptions) return names;
  for (const QuillmarkKit::TagField field : QuillmarkKit::allTagFields) {
    names.push_back(cliName(field));
    names.push_back(rawValue(field));
  }
  return names;
}

}  // namespace

std::string unknownOptionNote(const CommandOptions& command, std::string_view name) {
  constexpr std::size_t farthest = 2;
  std::string note =
      "--" + std::string(name) + " is no option of " + std::string(command.word) + " and is ignored";
  const std::size_t equals = std::min(name.find('='), name.size());
  const std::string_view typed = name.substr(0, equals);
  if (const auto value = optionValue(command, typed)) {
    const std::string_view given = name.substr(equals + 1);
    const bool takesNone = *value == OptionValue::none;
    return note.append("; write --")
               .append(typed)
               .append(takesNone ? "" : " ")
               .append(takesNone ? "" : given) +
           ".";
  }
  // The table's order decides between names that are as near.
  const auto names = optionNames(command);
  const auto distanceTo = [&](std::string_view option) { return editDistance(typed, option); };
  const auto nearest = std::ranges::min_element(names, {}, distanceTo);
  const bool isNear = !typed.empty() && distanceTo(*nearest) <= farthest;
  return isNear ? note.append("; did you mean --").append(*nearest) + "?" : note + ".";
}

}  // namespace quillmark
