#pragma once

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

/// Words of the command line where the system has put them.
using Words = std::span<char* const>;

/// A word that takes a value but is the last one.
class ArgumentError : public std::exception {
 public:
  /// `name` is the option's, without its hyphens.
  static ArgumentError missingValue(std::string_view name) {
    return ArgumentError("--" + std::string(name) + " needs a value.");
  }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  explicit ArgumentError(std::string description) : description_(std::move(description)) {}

  std::string description_;
};

/// The words behind a command, told apart. Words that start with two hyphens are options, where the command
/// takes a value for them, or else flags; all others are positional. Nothing is refused for being unknown,
/// and nothing ends the options.
struct Arguments {
  /// Throws ArgumentError. What follows the name of an option with a value is its value, whatever it looks
  /// like. The words must outlive the arguments.
  /// Flags in `defaults`, without their hyphens, count as given if the command has them.
  Arguments(Words words, const CommandOptions& command, std::span<const std::string_view> defaults = {});

  /// The option's value, the last one when it was given more than once.
  std::optional<std::string_view> value(const Option& option) const;
  bool has(const Option& flag) const { return flags.contains(flag.name); }

  std::set<std::string_view> flags;
  /// The flags that are no option of the command, in their order.
  std::vector<std::string_view> unknown;
  /// Names and values, each name once, in the order in which they were last given.
  std::vector<std::pair<std::string_view, std::string_view>> options;
  std::vector<std::string_view> positional;
};

}  // namespace quillmark
