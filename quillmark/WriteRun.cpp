#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "platform/Process.h"
#include "quillmark/Commands.h"
#include "quillmark/Console.h"
#include "quillmark/Report.h"

namespace quillmark {

std::unique_ptr<const QuillmarkKit::MP3TagStore> storeFor(const Arguments& arguments) {
  constexpr bool preservesDate = true;
  std::unique_ptr<QuillmarkKit::MP3TagStore> store;
  if (arguments.has(options::wholeTag)) {
    store = std::make_unique<QuillmarkKit::WholeTagStore>(preservesDate);
  } else if (arguments.has(options::lossless)) {
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
    report.add(applier.applyToOne(run.changeOf(reached), file, isDryRun, replacements),
               run.files.name(reached));
  }
  return report.finish(replacements, run.files.size() - reached);
}

}  // namespace quillmark
