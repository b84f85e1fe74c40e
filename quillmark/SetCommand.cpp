#include <string>

#include "QuillmarkKit/model/Artwork.h"
#include "platform/FileError.h"
#include "platform/Input.h"
#include "platform/Paths.h"
#include "platform/base/Formats.h"
#include "platform/base/Strings.h"
#include "quillmark/CLIError.h"
#include "quillmark/Commands.h"
#include "quillmark/DocumentRun.h"
#include "quillmark/FieldSelection.h"
#include "quillmark/Hints.h"
#include "quillmark/Stores.h"

namespace quillmark {

using QuillmarkKit::Artwork;
using QuillmarkKit::TagField;
using QuillmarkKit::TagFields;
using QuillmarkKit::TagSet;

namespace {

std::string textFrom(std::string_view option, std::string_view value) {
  if (!platform::Strings::isValidUTF8(value)) {
    throw CLIError("--" + std::string(option) + " expects text in UTF-8.");
  }
  return std::string(value);
}

std::int64_t numberFrom(TagField field, std::string_view option, std::string_view value) {
  const auto number = platform::Strings::decimalInteger(value);
  if (!number) {
    throw CLIError("--" + std::string(option) + " expects a number, got '" + std::string(value) + "'.",
                   numberHint(field, value));
  }
  return *number;
}

Artwork artworkFrom(std::string_view path) {
  const std::filesystem::path file = platform::fileLocation(path);
  std::string hint;
  try {
    // No tag has room for more bytes than this.
    const platform::SharedBytes bytes = platform::Input::contents(file, platform::synchsafeLimit);
    if (auto artwork = Artwork::detecting(bytes)) return std::move(*artwork);
    hint = platform::lastPathComponent(file) + " " + pictureHint(bytes);
  } catch (const platform::FileError& error) {
    hint = error.what();
  }
  throw CLIError::unreadableArtwork(path, hint);
}

void setField(TagField field, std::string_view option, std::string_view value, TagSet& tags) {
  dispatch(
      field, [&](QuillmarkKit::TextMember text) { tags.*text = textFrom(option, value); },
      [&](QuillmarkKit::NumberMember number) { tags.*number = numberFrom(field, option, value); },
      [&] { tags.artwork = artworkFrom(value); });
}

}  // namespace

WriteRun prepareSet(const Arguments& arguments, Console&) {
  if (const auto document = arguments.value(options::fromJSON)) {
    return prepareFromDocument(*document, arguments);
  }
  FileList files(arguments);
  TagSet tags;
  TagFields selection;
  for (const auto& [name, value] : arguments.options) {
    const auto field = QuillmarkKit::fieldFromCliName(name);
    if (!field) continue;
    setField(*field, name, value, tags);
    selection.insert(*field);
  }
  if (const auto list = arguments.value(options::clear)) selection.insert(fieldsNamed(*list));
  if (selection.isEmpty()) throw CLIError("set needs at least one field, e.g. --artist \"Väskelund\".");
  auto store = storeFor(arguments);
  tags = store->accepted(tags, selection);
  return {.files = std::move(files),
          .store = std::move(store),
          .tags = std::move(tags),
          .selection = selection,
          .options = RunOptions(arguments)};
}

}  // namespace quillmark
