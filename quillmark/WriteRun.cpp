#include "quillmark/WriteRun.h"

#include "QuillmarkKit/transfer/TagApplier.h"
#include "platform/Signals.h"
#include "quillmark/Progress.h"
#include "quillmark/Report.h"

namespace quillmark {

int writeInto(const WriteRun& run, Console& console) {
  const bool notesRemovals = console.wantsNotes() && !run.source.empty();
  const QuillmarkKit::TagApplier applier(
      *run.store, {.before = run.options.diff || notesRemovals, .losses = console.wantsNotes()});
  platform::ReplacementRun replacements;
  Report report(run.options, notesRemovals ? run.source : "", console);
  Progress progress(run.files.size(), console);
  platform::ReadAhead readAhead = run.files.readAhead();
  std::size_t reached = 0;
  for (; reached < run.files.size() && platform::Signals::interruption() == 0; ++reached) {
    readAhead.advanceTo(reached);
    const std::filesystem::path file = run.files.location(reached);
    progress.next(file);
    const bool hasOwn = !run.changes.empty();
    const QuillmarkKit::TagSet& tags = hasOwn ? run.changes[reached].tags : run.tags;
    const QuillmarkKit::TagFields selection = hasOwn ? run.changes[reached].selected : run.selection;
    report.add(applier.applyToOne(tags, file, selection, run.options.dryRun, replacements),
               run.files.name(reached));
  }
  report.synchronise(replacements);
  return report.finish(run.files.size() - reached);
}

}  // namespace quillmark
