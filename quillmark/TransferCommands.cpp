#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "QuillmarkKit/transfer/TagClipboard.h"
#include "platform/DesktopClipboard.h"
#include "platform/FileError.h"
#include "platform/Pasteboard.h"
#include "platform/Text.h"
#include "quillmark/Commands.h"
#include "quillmark/FieldSelection.h"
#include "quillmark/FileLocations.h"
#include "quillmark/ToolName.h"
#include "quillmark/WriteRun.h"

namespace quillmark {

using QuillmarkKit::ID3TagEditorStore;
using QuillmarkKit::TagApplier;
using QuillmarkKit::TagFields;
using QuillmarkKit::TagSet;

namespace {

/// The tag set's summary, each line indented.
std::string indentedSummary(const TagSet& tags) {
  const std::string summary = tags.summary();
  std::string text;
  for (const std::string_view line : platform::Text::split(summary, '\n'))
    text.append("  ").append(line).append("\n");
  return text;
}

}  // namespace

int commandCopy(Words words, StandardOutput& output) {
  const Arguments arguments(words, {});
  const std::filesystem::path file = *urls(arguments.positional).begin();
  const TagSet tags = ID3TagEditorStore(true).read(file);
  auto pasteboard = platform::Pasteboard::general();
  const bool isStored = QuillmarkKit::TagClipboard::copy(tags, pasteboard);
  if (!isStored) printError(pasteboard.failure());
  output.write("Copied tags from " + platform::lastPathComponent(file) + ".\n" + indentedSummary(tags));
  output.flush();
  // Last, so that nobody waits for a desktop that does not answer to see that the tags are stored.
  if (isStored && !arguments.hasFlag("no-desktop")) platform::putOnDesktopClipboard(tags.summary());
  return 0;
}

int commandPaste(Words words, StandardOutput& output) {
  const Arguments arguments(words, {"fields"});
  urls(arguments.positional);
  const auto tags = QuillmarkKit::TagClipboard::paste(platform::Pasteboard::general());
  if (!tags) {
    throw CLIError("No Quillmark tags on the clipboard. Run '" + std::string(toolName) +
                   " copy <file>' first.");
  }
  const ID3TagEditorStore store(true);
  const TagFields selection = fieldMask(arguments);
  return writeInto(arguments.positional, TagApplier(store), *tags, selection, arguments.hasFlag("dry-run"),
                   output);
}

int commandApply(Words words, StandardOutput& output) {
  const Arguments arguments(words, {"fields", "from"});
  const auto from = arguments.option("from");
  if (!from) throw CLIError("apply needs --from <file>.");
  const std::filesystem::path source = platform::fileLocation(*from);
  urls(arguments.positional);
  const ID3TagEditorStore store(true);
  const TagApplier applier(store);
  const TagFields selection = fieldMask(arguments);
  return writeInto(arguments.positional, applier, applier.read(source), selection,
                   arguments.hasFlag("dry-run"), output);
}

}  // namespace quillmark
