#include "quillmark/Report.h"

#include <string_view>
#include <vector>

#include "platform/FileError.h"
#include "quillmark/Differences.h"
#include "quillmark/Hints.h"

namespace quillmark {

using QuillmarkKit::TagApplier;
using QuillmarkKit::TagField;

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
    if (!hasNotedFolder_ && !options_.recursive && console_.wantsNotes()) {
      const std::string hint = folderHint(result.url);
      hasNotedFolder_ = !hint.empty();
      if (hasNotedFolder_) console_.printNote(hint);
    }
    return;
  }
  const bool isUnchanged = std::holds_alternative<TagApplier::Unchanged>(result.outcome);
  const TagApplier::Change* change = changeIn(result.outcome);
  if (change != nullptr) {
    for (const std::string& note : {change->losses, change->note}) {
      if (!note.empty()) console_.printNote(platform::lastPathComponent(result.url) + ": " + note);
    }
    if (change->before && !source_.empty())
      removed_.insert(change->before->populatedFields().without(change->tags.populatedFields()));
  }
  ++(isUnchanged ? unchanged_ : changed_);
  if (isUnchanged && options_.quiet) return;
  console_.write((isUnchanged       ? "unchanged "
                  : options_.dryRun ? "would     "
                                    : "updated   ") +
                 console_.shown(name) + "\n");
  if (change != nullptr && options_.diff)
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

/// Prints a note about the fields that were removed because the source does not have them.
void Report::noteRemovedFields() {
  std::vector<std::string> fields;
  for (const TagField field : QuillmarkKit::allTagFields) {
    if (removed_.contains(field)) fields.push_back("no " + nameInSentence(field));
  }
  const std::size_t count = fields.size();
  if (count == 0) return;
  std::string names = " has " + fields.front();
  for (std::size_t i = 1; i < count; ++i) names += (i + 1 < count ? ", " : " and ") + fields[i];
  const std::string_view verb = options_.dryRun ? "would be" : count > 1 ? "are" : "is";
  console_.printNote(source_ + names + ": " + (count > 1 ? "they " : "it ") + std::string(verb) +
                     " removed from the other files. --fields leaves " + (count > 1 ? "them" : "it") +
                     " alone.");
}

int Report::finish(std::size_t notReached) {
  console_.flush();
  noteRemovedFields();
  console_.write((options_.dryRun ? "\nwould change " : "\nchanged ") + std::to_string(changed_) +
                 ", unchanged " + std::to_string(unchanged_) + ", failed " + std::to_string(failed_) + "\n");
  if (notReached > 0) {
    console_.flush();
    console_.printError(std::to_string(notReached) +
                        (notReached == 1 ? " file was not reached." : " files were not reached."));
  }
  return failed_ > 0 || !isSynchronised_ ? 2 : 0;
}

}  // namespace quillmark
