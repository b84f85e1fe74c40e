#include "quillmark/Report.h"

#include "platform/FileError.h"
#include "quillmark/Differences.h"

namespace quillmark {

using QuillmarkKit::TagApplier;

namespace {

/// Returns the change of a file that was, or would be, rewritten.
const TagApplier::Change* changeIn(const TagApplier::Outcome& outcome) {
  if (const auto* updated = std::get_if<TagApplier::Updated>(&outcome)) return updated;
  return std::get_if<TagApplier::WouldUpdate>(&outcome);
}

}  // namespace

void Report::add(const TagApplier::Result& result, std::string_view given) {
  const std::string name = options_.paths ? std::string(given) : platform::lastPathComponent(result.url);
  if (const auto* failure = std::get_if<TagApplier::Failed>(&result.outcome)) {
    ++failed_;
    console_.printError("failed    " + name + ": " + failure->message);
    return;
  }
  const bool isUnchanged = std::holds_alternative<TagApplier::Unchanged>(result.outcome);
  const TagApplier::Change* change = changeIn(result.outcome);
  if (change != nullptr) {
    for (const std::string& note : {change->losses, change->note}) {
      if (!note.empty()) console_.printNote(platform::lastPathComponent(result.url) + ": " + note);
    }
  }
  ++(isUnchanged ? unchanged_ : changed_);
  console_.write((isUnchanged       ? "unchanged "
                  : options_.dryRun ? "would     "
                                    : "updated   ") +
                 console_.shown(name) + "\n");
  if (change != nullptr && change->before)
    console_.write(differences(*change->before, change->tags, change->keepsArtwork));
  console_.flush();
}

void Report::synchronise(platform::ReplacementRun& run) {
  try {
    run.synchronise();
  } catch (const std::exception& error) {
    isSynchronised_ = false;
    console_.printError(error.what());
  }
}

int Report::finish() {
  console_.write((options_.dryRun ? "\nwould change " : "\nchanged ") + std::to_string(changed_) +
                 ", unchanged " + std::to_string(unchanged_) + ", failed " + std::to_string(failed_) + "\n");
  return failed_ > 0 || !isSynchronised_ ? 2 : 0;
}

}  // namespace quillmark
