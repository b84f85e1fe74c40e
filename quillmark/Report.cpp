#include "quillmark/Report.h"

#include "platform/FileError.h"
#include "quillmark/Differences.h"

namespace quillmark {

using QuillmarkKit::TagApplier;

void Report::add(const TagApplier::Result& result, std::string_view given) {
  const std::string name = options_.paths ? std::string(given) : platform::lastPathComponent(result.url);
  if (const auto* failure = std::get_if<TagApplier::Failed>(&result.outcome)) {
    ++failed_;
    console_.printError("failed    " + name + ": " + failure->message);
    return;
  }
  const bool isUnchanged = std::holds_alternative<TagApplier::Unchanged>(result.outcome);
  ++(isUnchanged ? unchanged_ : changed_);
  console_.write((isUnchanged       ? "unchanged "
                  : options_.dryRun ? "would     "
                                    : "updated   ") +
                 console_.shown(name) + "\n");
  std::visit(
      [this](const auto& outcome) {
        if constexpr (requires { outcome.before; }) {
          if (outcome.before) console_.write(differences(*outcome.before, outcome.tags));
        }
      },
      result.outcome);
  console_.flush();
}

void Report::synchronise(const TagApplier& applier) {
  try {
    applier.synchronise();
  } catch (const std::exception& error) {
    ++failed_;
    console_.printError(error.what());
  }
}

int Report::finish() {
  console_.write((options_.dryRun ? "\nwould change " : "\nchanged ") + std::to_string(changed_) +
                 ", unchanged " + std::to_string(unchanged_) + ", failed " + std::to_string(failed_) + "\n");
  return failed_ > 0 ? 2 : 0;
}

}  // namespace quillmark
