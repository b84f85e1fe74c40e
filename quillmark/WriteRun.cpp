#include "quillmark/WriteRun.h"

#include "platform/Signals.h"
#include "quillmark/FileLocations.h"
#include "quillmark/Report.h"

namespace quillmark {

using QuillmarkKit::TagApplier;
using QuillmarkKit::TagFields;
using QuillmarkKit::TagSet;

int writeInto(Words paths, const TagApplier& applier, const TagSet& tags, TagFields selection, bool dryRun,
              platform::StandardOutput& output) {
  platform::Signals::noteInterruptions();
  Report report(dryRun, output);
  for (const std::filesystem::path& file : urls(paths)) {
    if (platform::Signals::interruption() != 0) break;
    report.add(applier.applyToOne(tags, file, selection, dryRun));
  }
  return report.finish();
}

}  // namespace quillmark
