#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "QuillmarkKit/model/TagField.h"

// What each command understands: one table for reading its words, its help, and what is said of other words.
namespace quillmark {

/// What stands behind an option's name.
enum class OptionValue : std::uint8_t { none, text, file, fieldList };

struct Option {
  /// Without its hyphens.
  std::string_view name;
  OptionValue value;
  /// What it does, in one line.
  std::string_view help;
};

namespace options {

inline constexpr Option all{"all", OptionValue::none, "write every field, not the album identity alone"};
inline constexpr Option backup{"backup", OptionValue::none, "keep each file as it was beside the new one"};
inline constexpr Option clear{"clear", OptionValue::fieldList, "remove these fields"};
inline constexpr Option diff{"diff", OptionValue::none, "tell what changes in each file, field by field"};
inline constexpr Option dryRun{"dry-run", OptionValue::none, "say what would happen and write nothing"};
inline constexpr Option fields{"fields", OptionValue::fieldList, "write these fields and no others"};
inline constexpr Option files0From{"files0-from", OptionValue::file,
                                   "further files, each name ended by a NUL; - is standard input"};
inline constexpr Option from{"from", OptionValue::file, "the MP3 whose tags are written"};
inline constexpr Option help{"help", OptionValue::none, "print this text"};
inline constexpr Option keepGoing{"keep-going", OptionValue::none, "leave out files that cannot be read"};
inline constexpr Option noArtwork{"no-artwork", OptionValue::none,
                                  "with --json, pictures by their size alone"};
inline constexpr Option json{"json", OptionValue::none, "print one JSON object, a member for each file"};
inline constexpr Option lossless{"lossless", OptionValue::none,
                                 "keep all that other programs wrote, and read it as they meant it"};
inline constexpr Option noDesktop{"no-desktop", OptionValue::none, "leave the desktop's clipboard alone"};
inline constexpr Option notes{"notes", OptionValue::none, "print notes also where no terminal shows them"};
inline constexpr Option quiet{"quiet", OptionValue::none, "print no lines for unchanged files"};
inline constexpr Option recursive{"recursive", OptionValue::none,
                                  "for a folder, take the MP3 files in and below it"};
inline constexpr Option strict{"strict", OptionValue::none,
                               "check all words and files first; begin only if all are right"};
inline constexpr Option wholeTag{"whole-tag", OptionValue::none, "copy the whole tag, frame for frame"};
inline constexpr Option paths{"paths", OptionValue::none, "name files in the report as they were given"};

}  // namespace options

/// A command's words: what it does, what it is given, its options and one example.
struct CommandOptions {
  std::string_view word;
  std::string_view purpose;
  /// What must be given, as the usage text writes it.
  std::string_view operands;
  std::span<const Option> options;
  /// Whether each field's names are options too, which take the field's value.
  bool hasFieldOptions;
  /// The words of the example behind the command.
  std::string_view example;
};

namespace options {

inline constexpr std::array ofRead{json,     noArtwork, keepGoing, recursive, files0From,
                                   lossless, notes,     strict,    help};
inline constexpr std::array ofCopy{noDesktop, lossless, notes, strict, help};
inline constexpr std::array ofPaste{all,       fields,     dryRun,   diff,  backup, paths, quiet,
                                    recursive, files0From, lossless, notes, strict, help};
inline constexpr std::array ofApply{from,  all,       fields,     wholeTag, dryRun, diff,   backup, paths,
                                    quiet, recursive, files0From, lossless, notes,  strict, help};
inline constexpr std::array ofSet{clear,     dryRun,     diff,     backup, paths,  quiet,
                                  recursive, files0From, lossless, notes,  strict, help};

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

/// The command's row; nothing for a word that names none with options.
constexpr bool hasOptions(std::string_view word) {
  return std::ranges::count(commandTable, word, &CommandOptions::word) == 1;
}

constexpr const CommandOptions* commandOptions(std::string_view word) {
  const auto* const row = std::ranges::find(commandTable, word, &CommandOptions::word);
  return row == commandTable.end() ? nullptr : row;
}

/// What `set` is given for the field.
inline OptionValue optionValue(QuillmarkKit::TagField field) {
  return field == QuillmarkKit::TagField::artwork ? OptionValue::file : OptionValue::text;
}

/// What stands behind the option of this name; nothing for a name that the command does not have.
std::optional<OptionValue> optionValue(const CommandOptions& command, std::string_view name);

}  // namespace quillmark
