#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "platform/Process.h"
#include "quillmark/Commands.h"
#include "quillmark/Console.h"
#include "quillmark/Report.h"

namespace quillmark {

std::unique_ptr<const QuillmarkKit::MP3TagStore> storeFor(
    const Arguments& arguments, const std::optional<std::filesystem::path>& wholeTagOf) {
  constexpr bool preservesDate = true;
  const bool isLossless = arguments.has(options::lossless);
  std::unique_ptr<QuillmarkKit::MP3TagStore> store;
  if (wholeTagOf) {
    store = std::make_unique<QuillmarkKit::WholeTagStore>(*wholeTagOf, isLossless, preservesDate);
  } else if (isLossless) {
    store = std::make_unique<QuillmarkKit::LosslessTagStore>(preservesDate);
  } else {
    store = std::make_unique<QuillmarkKit::ID3TagEditorStore>(preservesDate);
  }
  store->keepsBackup = arguments.has(options::backup);
  return store;
}

int writeInto(const WriteRun& run, const Arguments& arguments, Console& console) {
  const bool notesRemovals = console.wantsNotes() && !run.source.empty();
  const QuillmarkKit::TagApplier applier(
      *run.store, {.before = arguments.has(options::diff) || notesRemovals, .losses = console.wantsNotes()});
  const bool isDryRun = arguments.has(options::dryRun);
  platform::ReplacementRun replacements;
  Report report(arguments, notesRemovals ? run.source : "", console);
  Progress progress(run.files.size(), console);
  platform::ReadAhead readAhead = run.files.readAhead();
  std::size_t reached = 0;
  for (; reached < run.files.size() && platform::Signals::interruption() == 0; ++reached) {
    readAhead.advanceTo(reached);
    const std::filesystem::path file = run.files.location(reached);
    progress.next(file);
    const QuillmarkKit::TagChange& change = run.changeOf(reached);
    report.add(applier.applyToOne(change.tags, file, change.selected, isDryRun, replacements),
               run.files.name(reached));
  }
  return report.finish(replacements, run.files.size() - reached);
}

}  // namespace quillmark
