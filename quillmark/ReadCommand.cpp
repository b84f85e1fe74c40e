#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillmarkKit/store/TagStore.h"
#include "platform/FileError.h"
#include "platform/Paths.h"
#include "platform/Process.h"
#include "platform/StandardStreams.h"
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

void readAsText(const FileList& files, TagReader& reader, Console& console) {
  const std::string_view ifEmpty = reader.isLimited() ? "  (none of these fields)\n" : "  (no tags)\n";
  bool isFirst = true;
  platform::ReadAhead readAhead = files.readAhead();
  for (std::size_t i = 0; i < files.size(); ++i) {
    // The output is lost, so the rest need not be read.
    if (console.failure() != 0) return;
    readAhead.advanceTo(i);
    const std::filesystem::path file = files.location(i);
    const auto writeHeader = [&] {
      if (!std::exchange(isFirst, false)) console.write("\n");
      if (files.size() > 1) console.write(console.shown(platform::lastPathComponent(file)) + ":\n");
    };
    // An error that ends the run is printed below the name of its file.
    if (!reader.keepsGoing()) writeHeader();
    const auto tags = reader.tagsOf(file);
    if (!tags) continue;
    if (reader.keepsGoing()) writeHeader();
    list(*tags, ifEmpty, console);
  }
}

void readAsTable(const FileList& files, const Arguments& arguments, TagReader& reader, Console& console) {
  const auto list = arguments.value(options::printedFields);
  TagTable::Fields fields(TagTable::usualFields.begin(), TagTable::usualFields.end());
  if (list) fields = fieldsInOrder(*list);
  const bool givesPaths = arguments.has(options::pathsInTable);
  TagTable table(std::move(fields), console);
  platform::ReadAhead readAhead = files.readAhead();
  try {
    for (std::size_t i = 0; i < files.size() && console.failure() == 0; ++i) {
      readAhead.advanceTo(i);
      const std::filesystem::path file = files.location(i);
      const auto tags = reader.tagsOf(file);
      if (tags) table.add(givesPaths ? std::string(files.name(i)) : platform::lastPathComponent(file), *tags);
    }
  } catch (...) {
    table.finish();
    throw;
  }
  table.finish();
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

/// Throws CLIError if several options choose the form of the output.
void requireOneOutput(const Arguments& arguments) {
  const int count = static_cast<int>(arguments.has(options::json)) +
                    static_cast<int>(arguments.has(options::table)) +
                    static_cast<int>(arguments.value(options::saveArtwork).has_value());
  if (count > 1) throw CLIError("read takes only one of --json, --table and --save-artwork.");
}

}  // namespace

int commandRead(const Arguments& arguments, Console& console) {
  requireOneOutput(arguments);
  const FileList files(arguments);
  // With --keep-going, files that cannot be read are reported one by one.
  if (arguments.has(options::strict) && !arguments.has(options::keepGoing)) requireMP3Files(files);
  if (const auto file = arguments.value(options::saveArtwork)) {
    saveArtwork(files, *file, *storeFor(arguments), console);
    return 0;
  }
  TagReader reader(arguments, files.size(), console);
  if (arguments.has(options::table)) {
    readAsTable(files, arguments, reader, console);
  } else if (arguments.has(options::json)) {
    using Form = QuillmarkKit::ArtworkForm;
    readAsJSON(files, arguments.has(options::noArtwork) ? Form::size : Form::data, reader, console);
  } else {
    readAsText(files, reader, console);
  }
  return reader.status();
}

}  // namespace quillmark
