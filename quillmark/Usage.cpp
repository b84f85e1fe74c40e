#include "quillmark/Usage.h"

#include <string_view>

#include "quillmark/ToolName.h"

namespace quillmark {

namespace {

// "%" stands for the tool's name.
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

}  // namespace quillmark
