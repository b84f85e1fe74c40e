#include "quillmark/Usage.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "quillmark/CLIError.h"

namespace quillmark {

namespace {

// "%" is replaced by the tool's name.
constexpr std::string_view usageTemplate = R"(% — read and write ID3 tags on MP3 files.

USAGE
  % read  [--json] <files...>
  % copy  <file>
  % paste [--all | --fields <a,b>] [--dry-run] <files...>
  % apply --from <file> [--all | --fields <a,b>] [--dry-run] <files...>
  % set   [--<field> <value>]... [--clear <a,b>] [--dry-run] <files...>
  % fields

FIELD SELECTION
  By default paste and apply copy album identity only — album, artist, genre,
  year, disc, artwork and friends — leaving each file's own title and track
  number alone. Pass --all for a full clone, or --fields to name your own.

EXAMPLES
  % read track.mp3
  % copy "01 Kyrie.mp3" && % paste *.mp3
  % apply --from "01 Kyrie.mp3" --all "02 Gloria.mp3"
  % set --artist "Väskelund" --year 1977 --clear comment *.mp3
  % set --artwork cover.jpg *.mp3

Tags are written as ID3v2.3. Files are rewritten atomically and keep their
original modification date.)";

std::string_view placeholder(OptionValue value) {
  switch (value) {
    case OptionValue::none:
      return "";
    case OptionValue::text:
      return " <text>";
    case OptionValue::file:
      return " <file>";
    case OptionValue::fieldList:
      return " <a,b>";
  }
  return "";
}

/// Returns the names of all fields, in indented lines.
std::string fieldNames() {
  constexpr std::size_t columns = 80;
  std::string text;
  std::string line = " ";
  for (const QuillmarkKit::TagField field : QuillmarkKit::allTagFields) {
    const std::string_view name = cliName(field);
    if (line.size() + 1 + name.size() > columns) text += std::exchange(line, " ") + "\n";
    line.append(" ").append(name);
  }
  return text + line + "\n";
}

}  // namespace

std::string usageText() {
  std::string text;
  for (const char character : usageTemplate) {
    if (character == '%') {
      text += toolName;
    } else {
      text += character;
    }
  }
  return text;
}

std::vector<std::string> furtherHelp() {
  const std::string name(toolName);
  return {"'" + name + " COMMAND --help' lists all options; see also 'man " + name + "'.",
          "--lossless keeps everything that other programs wrote."};
}

std::string helpText(const CommandOptions& command) {
  std::vector<std::pair<std::string, std::string_view>> lines;
  if (command.hasFieldOptions) {
    lines.emplace_back("--<field> <value>", "write this value; artwork takes a picture file");
  }
  for (const Option& option : command.options) {
    lines.emplace_back("--" + std::string(option.name) + std::string(placeholder(option.value)), option.help);
  }
  std::size_t width = 0;
  for (const auto& [option, help] : lines) width = std::max(width, option.size());

  const std::string call = std::string(toolName) + " " + std::string(command.word);
  std::string text = call + " — " + std::string(command.purpose) + ".\n\nUSAGE\n  " + call +
                     " [<options...>] " + std::string(command.operands) + "\n\nOPTIONS\n";
  for (auto& [option, help] : lines) {
    option.resize(width, ' ');
    text.append("  ").append(option).append("  ").append(help).append("\n");
  }
  if (command.hasFieldOptions) text += "\nFIELDS\n" + fieldNames();
  return text + "\nEXAMPLE\n  " + call + " " + std::string(command.example) + "\n";
}

}  // namespace quillmark
