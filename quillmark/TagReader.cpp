#include "quillmark/Listings.h"

#include <string>
#include <utility>

#include "quillmark/Commands.h"
#include "quillmark/Hints.h"

namespace quillmark {

using QuillmarkKit::TagSet;

namespace {

void joinValues(TagSet& tags) {
  for (const QuillmarkKit::TagField field : QuillmarkKit::allTagFields) {
    const QuillmarkKit::TextMember text = stringKeyPath(field);
    if (text != nullptr && tags.*text) tags.*text = joiningValues(*(tags.*text));
  }
}

}  // namespace

TagReader::TagReader(const Arguments& arguments, const FileList& files, Console& console)
    : files_(files),
      keepsGoing_(arguments.has(options::keepGoing)),
      joinsValues_(arguments.has(options::lossless) && !arguments.has(options::json)),
      printsNotes_(console.wantsNotes() &&
                   (arguments.has(options::notes) || arguments.has(options::lossless))),
      store_(storeFor(arguments)),
      console_(console),
      progress_(files.size(), console),
      readAhead_(files.readAhead()) {
  if (const auto list = arguments.value(options::printedFields)) fields_ = fieldsNamed(*list);
}

bool TagReader::next() {
  if (reached_ == files_.size() || console_.failure() != 0) return false;
  readAhead_.advanceTo(reached_);
  file_ = files_.location(reached_++);
  return true;
}

std::optional<TagSet> TagReader::tags() {
  constexpr int someFilesFailed = 2;
  progress_.next(file_);
  try {
    return read();
  } catch (const std::exception& error) {
    if (!keepsGoing_) throw;
    console_.printError(error.what());
    status_ = someFilesFailed;
    // The only hint is the one for folders.
    const std::string hint = hintOf(error);
    if (!hint.empty() && !std::exchange(hasNotedFolder_, true)) console_.printNote(hint);
    return std::nullopt;
  }
}

TagSet TagReader::read() {
  auto source = hintingAtFolder(file_, [&] {
    return printsNotes_ ? store_->readWithNotes(file_) : QuillmarkKit::TagSource{.tags = store_->read(file_)};
  });
  console_.printNote(file_, source.notes.misread);
  if (joinsValues_) joinValues(source.tags);
  return isLimited() ? TagSet().merging(source.tags, fields_) : std::move(source.tags);
}

}  // namespace quillmark
