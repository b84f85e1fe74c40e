#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillmarkKit/store/TagStore.h"
#include "platform/FileError.h"
#include "platform/FileReplacement.h"
#include "platform/Paths.h"
#include "platform/Process.h"
#include "platform/base/Strings.h"
#include "quillmark/Commands.h"
#include "quillmark/Console.h"
#include "quillmark/FileList.h"
#include "quillmark/Hints.h"
#include "quillmark/Listings.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagSet;

namespace {

void list(const TagSet& tags, std::string_view ifEmpty, Console& console) {
  std::vector<std::pair<std::string_view, std::string>> lines;
  std::size_t width = 0;
  for (const TagField field : QuillmarkKit::allTagFields) {
    auto value = tags.value(field);
    if (!value) continue;
    lines.emplace_back(displayName(field), std::move(*value));
    width = std::max(width, displayName(field).size());
  }
  if (lines.empty()) console.write(ifEmpty);
  for (const auto& [label, value] : lines) {
    console.write("  " + std::string(label) + std::string(width - label.size(), ' ') + "  " +
                  console.shown(value, width + 4) + "\n");
  }
}

int readAsText(const FileList& files, const Arguments& arguments, Console& console) {
  TagReader reader(arguments, files, console);
  const std::string_view ifEmpty = reader.isLimited() ? "  (none of these fields)\n" : "  (no tags)\n";
  bool isFirst = true;
  while (reader.next()) {
    const auto writeHeader = [&] {
      if (!std::exchange(isFirst, false)) console.write("\n");
      if (files.size() > 1) console.write(console.shown(platform::lastPathComponent(reader.file())) + ":\n");
    };
    // An error that ends the run is printed below the name of its file.
    if (!reader.keepsGoing()) writeHeader();
    const auto tags = reader.tags();
    if (!tags) continue;
    if (reader.keepsGoing()) writeHeader();
    list(*tags, ifEmpty, console);
  }
  return reader.status();
}

int readAsTable(const FileList& files, const Arguments& arguments, Console& console) {
  TagReader reader(arguments, files, console);
  const auto list = arguments.value(options::printedFields);
  TagTable::Fields fields(TagTable::usualFields.begin(), TagTable::usualFields.end());
  if (list) fields = fieldsInOrder(*list);
  const bool givesPaths = arguments.has(options::pathsInTable);
  TagTable table(std::move(fields), console);
  try {
    while (reader.next()) {
      const auto tags = reader.tags();
      if (!tags) continue;
      table.add(givesPaths ? std::string(reader.name()) : platform::lastPathComponent(reader.file()), *tags);
    }
  } catch (...) {
    table.finish();
    throw;
  }
  table.finish();
  return reader.status();
}

/// Writes the artwork of the only file in `files`, byte for byte, to the file that the word `to` names, or to
/// standard output for "-". A file that is there is replaced in one step. Throws CLIError if there are
/// several files, if the MP3 has no artwork, or if `to` is a terminal or names an MP3; and what reading the
/// MP3 or writing the picture throws. Nothing has been written then.
void saveArtwork(const FileList& files, std::string_view to, const QuillmarkKit::TagStore& store,
                 Console& console) {
  if (files.size() != 1) throw CLIError("--save-artwork takes one MP3.");
  const bool isStandardOutput = to == "-";
  if (isStandardOutput && console.outputIsTerminal()) {
    throw CLIError("--save-artwork does not write a picture to a terminal. Name a file instead of -.");
  }
  const std::filesystem::path target = platform::fileLocation(to);
  // Otherwise, "--save-artwork *.mp3" would replace the first MP3.
  if (platform::Strings::equalIgnoringASCIICase(target.extension().native(), ".mp3")) {
    throw CLIError("--save-artwork does not replace an MP3 with a picture: " + std::string(to) + ".");
  }
  const std::filesystem::path source = files.location(0);
  const auto artwork = store.read(source).artwork;
  if (!artwork) throw CLIError(platform::lastPathComponent(source) + " has no artwork.");
  if (isStandardOutput) {
    console.write(platform::charactersOf(artwork->data));
    return;
  }
  // A signal must not leave an unfinished file.
  platform::Signals::noteInterruptions();
  platform::replaceContents(target, artwork->data);
}

}  // namespace

int commandRead(const Arguments& arguments, Console& console) {
  const std::array outputs{arguments.has(options::json), arguments.has(options::table),
                           arguments.value(options::saveArtwork).has_value()};
  if (std::ranges::count(outputs, true) > 1)
    throw CLIError("read takes only one of --json, --table and --save-artwork.");
  FileList files(arguments);
  // With --keep-going, files that cannot be read are reported one by one.
  if (arguments.has(options::strict) && !arguments.has(options::keepGoing)) requireMP3Files(files);
  if (const auto file = arguments.value(options::saveArtwork)) {
    saveArtwork(files, *file, *storeFor(arguments), console);
    return 0;
  }
  if (arguments.has(options::table)) return readAsTable(files, arguments, console);
  if (arguments.has(options::json)) return readAsJSON(files, arguments, console);
  return readAsText(files, arguments, console);
}

}  // namespace quillmark
