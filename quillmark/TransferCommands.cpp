#include <algorithm>

#include "QuillmarkKit/transfer/TagClipboard.h"
#include "platform/FileError.h"
#include "platform/Pasteboard.h"
#include "platform/Paths.h"
#include "platform/base/Strings.h"
#include "quillmark/Commands.h"

namespace quillmark {

using QuillmarkKit::TagFields;
using QuillmarkKit::TagSet;

namespace {

/// Returns the tag set's summary with indented lines. At a terminal, no text of a file can look like a label
/// of the summary.
std::string indentedSummary(const TagSet& tags, const Console& console) {
  std::string summary;
  for (const QuillmarkKit::TagField field : TagSet::summaryFields) {
    const auto value = tags.value(field);
    if (!value) continue;
    const std::string label = std::string(displayName(field)) + ": ";
    summary.append(label).append(console.shown(*value, label.size())).append("\n");
  }
  if (summary.empty()) summary = tags.summary();
  std::string text;
  for (const std::string_view line : platform::Strings::split(summary, '\n'))
    text.append("  ").append(line).append("\n");
  return text;
}

/// Returns the text with everything but its line feeds and tabs made visible, because a terminal may be where
/// it is pasted.
std::string harmless(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\n\t"), text.size());
    shown += platform::Strings::visible(text.substr(0, end));
    shown += text.substr(end, 1);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return shown;
}

/// Returns the fields that paste and apply write: those of `--fields`, else with `--all` every field, else
/// the album identity. Throws CLIError for the first name that no field has.
TagFields fieldMask(const Arguments& arguments) {
  if (const auto list = arguments.value(options::fields)) return fieldsNamed(*list);
  return arguments.has(options::all) ? TagFields::all : TagFields::albumIdentity;
}

}  // namespace

int commandCopy(const Arguments& arguments, Console& console) {
  const std::filesystem::path file = FileList(arguments).location(0);
  constexpr bool acceptsUnrepresentable = true;
  const auto source =
      storeFor(arguments)->source(file, TagFields::all, console.wantsNotes(), acceptsUnrepresentable);
  console.printNote(file, source.notes.misread);
  const TagSet& tags = source.tags;
  auto pasteboard = platform::Pasteboard::general();
  QuillmarkKit::TagClipboard::copy(tags, pasteboard, source.unrepresentable);
  console.write("Copied tags from " + console.shown(platform::lastPathComponent(file)) + ".\n");
  console.write(indentedSummary(tags, console));
  console.flush();
  // Last, because a desktop may be slow to answer and the tags are stored already.
  if (!arguments.has(options::noDesktop)) platform::putOnDesktopClipboard(harmless(tags.summary()));
  return 0;
}

WriteRun preparePaste(const Arguments& arguments, Console&) {
  FileList files(arguments);
  const auto pasteboard = platform::Pasteboard::general();
  auto tags = QuillmarkKit::TagClipboard::paste(pasteboard);
  if (!tags) {
    throw CLIError("No Quillmark tags on the clipboard. Run '" + std::string(toolName) +
                   " copy <file>' first.");
  }
  auto store = storeFor(arguments);
  const TagFields selected = fieldMask(arguments);
  for (const auto& [field, value] : QuillmarkKit::TagClipboard::unrepresentableValues(pasteboard)) {
    if (!selected.contains(field)) continue;
    throw CLIError("The clipboard cannot carry the " + std::string(cliName(field)) + " " + value +
                   " of the copied file. Leave it out with --fields.");
  }
  try {
    *tags = store->accepted(*tags, selected);
  } catch (const std::exception& error) {
    throw CLIError(std::string(error.what()) + " Leave it out with --fields.");
  }
  return {.files = std::move(files),
          .store = std::move(store),
          .changes = {{.tags = std::move(*tags), .selected = selected}},
          .source = "The clipboard"};
}

WriteRun prepareApply(const Arguments& arguments, Console& console) {
  const auto from = arguments.value(options::from);
  if (!from) throw CLIError("apply needs --from <file>.");
  const std::filesystem::path source = platform::fileLocation(*from);
  const bool takesWholeTag = arguments.has(options::wholeTag);
  if (takesWholeTag && (arguments.has(options::all) || arguments.value(options::fields)))
    throw CLIError("--whole-tag takes the whole tag, without --all and --fields.");
  FileList files(arguments);
  if (takesWholeTag) {
    QuillmarkKit::TagChange change = QuillmarkKit::WholeTagStore::changeTo(source);
    change.mayHideAPETag = !arguments.has(options::lossless);
    return {.files = std::move(files), .store = storeFor(arguments), .changes = {std::move(change)}};
  }
  auto store = storeFor(arguments);
  const TagFields selected = fieldMask(arguments);
  auto read = store->source(source, selected, console.wantsNotes());
  console.printNote(source, read.notes.misread);
  if (selected == TagFields::all && !read.notes.beyondFields.empty()) {
    console.printNote(source, "not carried, as no field holds them: " + read.notes.beyondFields +
                                  ". --whole-tag takes them.");
  }
  return {.files = std::move(files),
          .store = std::move(store),
          .changes = {{.tags = std::move(read.tags), .selected = selected}},
          .source = platform::lastPathComponent(source)};
}

}  // namespace quillmark
