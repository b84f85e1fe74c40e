#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "platform/Signals.h"
#include "quillmark/Commands.h"
#include "quillmark/FieldSelection.h"
#include "quillmark/FileLocations.h"
#include "quillmark/Report.h"

namespace quillmark {

using QuillmarkKit::ID3TagEditorStore;
using QuillmarkKit::TagApplier;
using QuillmarkKit::TagFields;
using QuillmarkKit::TagSet;

int writeInto(Words paths, const TagApplier& applier, const TagSet& tags, TagFields selection, bool dryRun,
              StandardOutput& output) {
  platform::Signals::noteInterruptions();
  Report report(dryRun, output);
  for (const std::filesystem::path& file : urls(paths)) {
    if (platform::Signals::interruption() != 0) break;
    report.add(applier.apply(tags, file, selection, dryRun));
  }
  return report.finish();
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
