#pragma once

#include <algorithm>
#include <exception>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quillmark/Options.h"

namespace quillmark {

/// Words of the command line, in the memory that the system passed.
using Words = std::span<char* const>;

/// An option that takes a value but is the last word.
class ArgumentError : public std::exception {
 public:
  /// `name` is the option's name without its hyphens.
  static ArgumentError missingValue(std::string_view name) {
    return ArgumentError("--" + std::string(name) + " needs a value.");
  }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  explicit ArgumentError(std::string description) : description_(std::move(description)) {}

  std::string description_;
};

/// The words after a command, by their kinds. A word that starts with two hyphens is an option if the command
/// takes a value for it, else a flag; all others are positional. Unknown options are accepted, and no word
/// ends the options.
struct Arguments {
  /// The word after an option with a value is its value, even if it looks like an option. Flags in
  /// `defaults`, without their hyphens, count as given if the command has them. The words must outlive the
  /// arguments. Throws ArgumentError.
  Arguments(Words words, const CommandOptions& command, std::span<const std::string_view> defaults = {});

  /// Returns the option's value, the last one if there are several.
  std::optional<std::string_view> value(const Option& option) const;
  /// Returns whether the option, one of the command's, is given.
  bool has(const Option& flag) const {
    return flags.contains(flag.name) && std::ranges::find(unknown, flag.name) == unknown.end();
  }

  std::set<std::string_view> flags;
  /// The flags that are not options of the command, in their order.
  std::vector<std::string_view> unknown;
  /// Names and values, each name once, in the order of their last occurrence.
  std::vector<std::pair<std::string_view, std::string_view>> options;
  std::vector<std::string_view> positional;
};

}  // namespace quillmark
