#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/transfer/TagApplier.h"
#include "platform/FileError.h"
#include "platform/Process.h"
#include "quillmark/Commands.h"
#include "quillmark/Console.h"
#include "quillmark/Report.h"

namespace quillmark {

namespace {

constexpr bool preservesDate = true;

}  // namespace

std::unique_ptr<const QuillmarkKit::MP3TagStore> storeFor(const Arguments& arguments) {
  std::unique_ptr<QuillmarkKit::MP3TagStore> store;
  if (arguments.has(options::lossless)) {
    store = std::make_unique<QuillmarkKit::LosslessTagStore>(preservesDate);
  } else {
    store = std::make_unique<QuillmarkKit::ID3TagEditorStore>(preservesDate);
  }
  store->keepsBackup = arguments.has(options::backup);
  return store;
}

std::unique_ptr<const QuillmarkKit::TagStore> wholeTagStore(const Arguments& arguments) {
  auto store = std::make_unique<QuillmarkKit::WholeTagStore>(preservesDate);
  store->keepsBackup = arguments.has(options::backup);
  return store;
}

QuillmarkKit::TagSource readSource(const QuillmarkKit::MP3TagStore& store, const std::filesystem::path& from,
                                QuillmarkKit::TagFields fields, Console& console, SourceOptions options) {
  auto source = store.source(from, fields, console.wantsNotes(), options.acceptsUnrepresentable);
  if (!source.notes.misread.empty())
    console.printNote(platform::lastPathComponent(from) + ": " + source.notes.misread);
  return source;
}

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
    QuillmarkKit::TagChange own;
    if (!run.changes.empty())
      own = {.tags = run.changes[reached].tags, .selected = run.changes[reached].selected};
    report.add(
        applier.applyToOne(run.changes.empty() ? run.change : own, file, run.options.dryRun, replacements),
        run.files.name(reached));
  }
  report.synchronise(replacements);
  return report.finish(run.files.size() - reached);
}

}  // namespace quillmark
