#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quillmark/Commands.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagFields;

namespace {

constexpr std::string_view usage = R"(quillmark — read and write ID3 tags on MP3 files.

USAGE
  quillmark read  [--json] <files...>
  quillmark copy  <file>
  quillmark paste [--all | --fields <a,b>] [--dry-run] <files...>
  quillmark apply --from <file> [--all | --fields <a,b>] [--dry-run] <files...>
  quillmark set   [--<field> <value>]... [--clear <a,b>] [--dry-run] <files...>
  quillmark fields

FIELD SELECTION
  By default paste and apply copy album identity only — album, artist, genre,
  year, disc, artwork and friends — leaving each file's own title and track
  number alone. Pass --all for a full clone, or --fields to name your own.

EXAMPLES
  quillmark read track.mp3
  quillmark copy "01 Kyrie.mp3" && quillmark paste *.mp3
  quillmark apply --from "01 Kyrie.mp3" --all "02 Gloria.mp3"
  quillmark set --artist "Väskelund" --year 1977 --clear comment *.mp3
  quillmark set --artwork cover.jpg *.mp3

Tags are written as ID3v2.3. Files are rewritten atomically and keep their
original modification date.
)";

/// The placeholder of each kind of value.
constexpr std::array<std::string_view, 4> placeholders{"", " <text>", " <file>", " <a,b>"};

/// Returns the names of all fields, in indented lines.
std::string fieldNames() {
  constexpr std::size_t columns = 80;
  std::string text;
  std::string line = " ";
  for (const TagField field : QuillmarkKit::allTagFields) {
    const std::string_view name = cliName(field);
    if (line.size() + 1 + name.size() > columns) text += std::exchange(line, " ") + "\n";
    line.append(" ").append(name);
  }
  return text + line + "\n";
}

}  // namespace

int commandHelp(Console& console) {
  console.write(usage);
  if (!console.errorIsTerminal()) return 0;
  const std::string name(toolName);
  console.printNote("'" + name + " COMMAND --help' lists all options; see also 'man " + name + "'.");
  console.printNote("--lossless keeps everything that other programs wrote.");
  return 0;
}

int commandVersion(Console& console) {
  console.write(std::string(toolName) + " " QUILLMARK_VERSION "\n");
  return 0;
}

int commandFields(Console& console) {
  auto fields = QuillmarkKit::allTagFields;
  std::ranges::sort(fields, {}, QuillmarkKit::cliName);
  const auto nameLength = [](TagField field) { return cliName(field).size(); };
  const std::size_t width = nameLength(std::ranges::max(fields, {}, nameLength));

  console.write("Field names (use with --fields, or as flags for 'set'):\n\n");
  for (const TagField field : fields) {
    std::string name(cliName(field));
    name.resize(width, ' ');
    console.write(TagFields::albumIdentity.contains(field) ? "  * " : "    ");
    console.write(name + "  " + std::string(displayName(field)) + "\n");
  }
  console.write("\n  * included in the default paste (album identity)\n");
  return 0;
}

std::string helpText(const CommandOptions& command) {
  std::vector<std::pair<std::string, std::string_view>> lines;
  if (command.hasFieldOptions) {
    lines.emplace_back("--<field> <value>", "write this value; artwork takes a picture file");
  }
  for (const Option& option : command.options) {
    lines.emplace_back("--" + std::string(option.name) +
                           std::string(placeholders.at(static_cast<std::size_t>(option.value))),
                       option.help);
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
