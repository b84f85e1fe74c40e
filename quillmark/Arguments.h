#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillmarkKit/model/TagField.h"

// The options of each command, in one table for the parser, the help texts and the hints. scripts/options
// makes the lists in the manual, the completions and the README from the help texts.
namespace quillmark {

/// The kind of value that follows an option's name.
enum class OptionValue : std::uint8_t { none, text, file, fieldList };

struct Option {
  /// Without its hyphens.
  std::string_view name;
  OptionValue value;
  /// Its effect, in one line.
  std::string_view help;
};

namespace options {

inline constexpr Option all{"all", OptionValue::none, "write every field, not only the album identity"};
inline constexpr Option backup{"backup", OptionValue::none, "keep each file as it was beside the new one"};
inline constexpr Option clear{"clear", OptionValue::fieldList, "remove these fields"};
inline constexpr Option diff{"diff", OptionValue::none, "show what changes in each file, field by field"};
inline constexpr Option dryRun{"dry-run", OptionValue::none, "say what would happen and write nothing"};
inline constexpr Option fields{"fields", OptionValue::fieldList, "write these fields and no others"};
inline constexpr Option files0From{"files0-from", OptionValue::file,
                                   "take further files from a list, names ended by NUL"};
inline constexpr Option from{"from", OptionValue::file, "the MP3 whose tags are written"};
inline constexpr Option fromJSON{"from-json", OptionValue::file,
                                 "write a document of read --json; - is standard input"};
inline constexpr Option help{"help", OptionValue::none, "print this text"};
inline constexpr Option keepGoing{"keep-going", OptionValue::none,
                                  "report files that cannot be read, and go on"};
inline constexpr Option noArtwork{"no-artwork", OptionValue::none,
                                  "with --json, print only the size of each picture"};
inline constexpr Option printedFields{"fields", OptionValue::fieldList, "print these fields and no others"};
inline constexpr Option json{"json", OptionValue::none, "print one JSON object, a member for each file"};
inline constexpr Option lossless{"lossless", OptionValue::none, "keep everything that other programs wrote"};
inline constexpr Option noDesktop{"no-desktop", OptionValue::none, "leave the desktop's clipboard alone"};
inline constexpr Option notes{"notes", OptionValue::none, "print notes even if there is no terminal"};
inline constexpr Option quiet{"quiet", OptionValue::none, "print no lines for unchanged files"};
inline constexpr Option recursive{"recursive", OptionValue::none,
                                  "for a folder, take the MP3 files in and below it"};
inline constexpr Option strict{"strict", OptionValue::none,
                               "check the words and all files before the first write"};
inline constexpr Option wholeTag{"whole-tag", OptionValue::none, "copy the whole tag, frame for frame"};
inline constexpr Option paths{"paths", OptionValue::none, "name files in the report as they were given"};
inline constexpr Option pathsInTable{"paths", OptionValue::none,
                                     "with --table, name files as they were given"};
inline constexpr Option saveArtwork{"save-artwork", OptionValue::file,
                                    "save the picture of one MP3; - is standard output"};
inline constexpr Option table{"table", OptionValue::none, "print one line for each file"};

}  // namespace options

/// A command as its help text describes it.
struct CommandOptions {
  std::string_view word;
  std::string_view purpose;
  /// The operands, as the usage text writes them.
  std::string_view operands;
  std::span<const Option> options;
  /// Whether the names of the fields are options too, which take the field's value.
  bool hasFieldOptions;
  /// The words of an example after the command.
  std::string_view example;
};

namespace options {

inline constexpr std::array ofRead{json,        noArtwork, table,     pathsInTable, printedFields,
                                   saveArtwork, keepGoing, recursive, files0From,   lossless,
                                   notes,       strict,    help};
inline constexpr std::array ofCopy{noDesktop, lossless, notes, strict, help};
inline constexpr std::array ofPaste{all,       fields,     dryRun,   diff,  backup, paths, quiet,
                                    recursive, files0From, lossless, notes, strict, help};
inline constexpr std::array ofApply{from,  all,       fields,     wholeTag, dryRun, diff,   backup, paths,
                                    quiet, recursive, files0From, lossless, notes,  strict, help};
inline constexpr std::array ofSet{clear,     fromJSON,   dryRun,   diff,  backup, paths, quiet,
                                  recursive, files0From, lossless, notes, strict, help};

}  // namespace options

/// The commands that have options, in the order of the usage text.
inline constexpr auto commandTable = std::to_array<CommandOptions>({
    {"read", "list the tags of MP3 files", "<files...>", options::ofRead, false, "--json *.mp3"},
    {"copy", "put one file's tags on the clipboard", "<file>", options::ofCopy, false, R"("01 Kyrie.mp3")"},
    {"paste", "write the tags on the clipboard into files", "<files...>", options::ofPaste, false,
     "--fields album,artist,year *.mp3"},
    {"apply", "write one file's tags into others", "--from <file> <files...>", options::ofApply, false,
     R"(--from "01 Kyrie.mp3" --dry-run *.mp3)"},
    {"set", "write given values into files", "<files...>", options::ofSet, true,
     R"(--artist "Väskelund" --year 1977 --clear comment *.mp3)"},
});

/// Returns the command's row, or nullptr for another word.
constexpr const CommandOptions* commandOptions(std::string_view word) {
  const auto* const row = std::ranges::find(commandTable, word, &CommandOptions::word);
  return row == commandTable.end() ? nullptr : row;
}

/// Returns the kind of value that `set` takes for the field.
inline OptionValue optionValue(QuillmarkKit::TagField field) {
  return field == QuillmarkKit::TagField::artwork ? OptionValue::file : OptionValue::text;
}

/// Returns the kind of value of the option with this name, or nothing if the command does not have it.
std::optional<OptionValue> optionValue(const CommandOptions& command, std::string_view name);

/// An option that takes a value but is the last word.
class ArgumentError : public std::runtime_error {
 public:
  /// `name` is the option's name without its hyphens.
  static ArgumentError missingValue(std::string_view name);

 private:
  using std::runtime_error::runtime_error;
};

/// A mistake in a command line.
class CLIError : public std::runtime_error {
 public:
  /// `hint` is a sentence for a note that may help, or empty.
  explicit CLIError(const std::string& description, std::string hint = {})
      : std::runtime_error(description), hint_(std::move(hint)) {}
  static CLIError unknownField(std::string_view name, std::string hint);
  static CLIError unreadableArtwork(std::string_view path, std::string hint);
  static CLIError noFiles();

  const std::string& hint() const { return hint_; }

 private:
  std::string hint_;
};

/// Returns the hint of a CLIError, or an empty text for another error.
std::string hintOf(const std::exception& error);

/// Words of the command line, in the memory that the system passed.
using Words = std::span<char* const>;

/// The words after a command, by their kinds. A word that starts with two hyphens is an option if the command
/// takes a value for it, else a flag; all others are positional. Unknown options are accepted, and no word
/// ends the options.
struct Arguments {
  /// The word after an option with a value is its value, even if it looks like an option. Flags in
  /// `defaults`, without their hyphens, count as given if the command has them. The words must outlive the
  /// arguments. Throws CLIError if an option that takes a value is the last word.
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

/// Returns the names of the options in the environment variable QUILLMARK_OPTIONS, without their hyphens.
/// Throws CLIError for a word that is not an option of any command, and for an option that takes a value.
std::vector<std::string_view> defaultOptions();

/// Returns the fields that a comma-separated list names by either of their names, each once, in the list's
/// order. Throws CLIError for the first name that no field has.
std::vector<QuillmarkKit::TagField> fieldsInOrder(std::string_view list);
/// Returns the same fields as a selection.
QuillmarkKit::TagFields fieldsNamed(std::string_view list);

}  // namespace quillmark
