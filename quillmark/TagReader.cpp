#include "quillmark/Listings.h"

#include <string>
#include <utility>

#include "platform/FileError.h"
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

TagReader::TagReader(const Arguments& arguments, std::size_t fileCount, Console& console)
    : keepsGoing_(arguments.has(options::keepGoing)),
      joinsValues_(arguments.has(options::lossless) && !arguments.has(options::json)),
      printsNotes_(console.wantsNotes() &&
                   (arguments.has(options::notes) || arguments.has(options::lossless))),
      store_(storeFor(arguments)),
      console_(console),
      progress_(fileCount, console) {
  if (const auto list = arguments.value(options::printedFields)) fields_ = fieldsNamed(*list);
}

std::optional<TagSet> TagReader::tagsOf(const std::filesystem::path& file) {
  constexpr int someFilesFailed = 2;
  progress_.next(file);
  if (!keepsGoing_) return read(file);
  const auto report = [&](const std::exception& error) {
    console_.flush();
    console_.printError(error.what());
    status_ = someFilesFailed;
  };
  try {
    return read(file);
  } catch (const CLIError& error) {
    report(error);
    // The only hint is the one for folders.
    if (!std::exchange(hasNotedFolder_, true)) console_.printNote(error.hint());
  } catch (const std::exception& error) {
    report(error);
  }
  return std::nullopt;
}

TagSet TagReader::read(const std::filesystem::path& file) {
  TagSet tags =
      hintingAtFolder(file, [&] { return printsNotes_ ? readWithNotes(file) : store_->read(file); });
  if (joinsValues_) joinValues(tags);
  return isLimited() ? TagSet().merging(tags, fields_) : tags;
}

TagSet TagReader::readWithNotes(const std::filesystem::path& file) {
  auto source = store_->readWithNotes(file);
  if (!source.losses.empty()) {
    console_.flush();
    console_.printNote(platform::lastPathComponent(file) + ": " + source.losses);
  }
  return std::move(source.tags);
}

}  // namespace quillmark
