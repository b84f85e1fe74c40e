#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "QuillmarkKit/model/Artwork.h"
#include "QuillmarkKit/model/TagSetJSON.h"
#include "platform/FileError.h"
#include "platform/Paths.h"
#include "platform/StandardStreams.h"
#include "platform/base/Formats.h"
#include "platform/base/JSON.h"
#include "platform/base/Strings.h"
#include "quillmark/Commands.h"
#include "quillmark/Hints.h"

namespace quillmark {

namespace JSON = platform::JSON;
using QuillmarkKit::Artwork;
using QuillmarkKit::FileChange;
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
  throw CLIError::unreadableArtwork(path, std::move(hint));
}

void setField(TagField field, std::string_view option, std::string_view value, TagSet& tags) {
  dispatch(
      field, [&](QuillmarkKit::TextMember text) { tags.*text = textFrom(option, value); },
      [&](QuillmarkKit::NumberMember number) { tags.*number = numberFrom(field, option, value); },
      [&] { tags.artwork = artworkFrom(value); });
}

/// Throws CLIError if the command line also names files or fields.
void requireNothingBeside(const Arguments& arguments) {
  std::string other;
  for (const auto& [name, value] : arguments.options) {
    if (name != options::fromJSON.name) other = "--" + std::string(name);
  }
  if (!arguments.positional.empty()) other = arguments.positional.front();
  if (other.empty()) return;
  throw CLIError("--from-json takes its files and fields from the document; leave out " + other + ".");
}

std::string placeOf(const FileChange& change) {
  const std::array<std::string_view, 1> names{change.file};
  return JSON::placeOf(names);
}

/// Throws DecodingError if two of the names lead to the same file, which cannot get different values.
void requireDifferentFiles(const std::vector<FileChange>& changes) {
  std::unordered_map<std::string, const FileChange*> seen;
  for (const FileChange& change : changes) {
    auto file = platform::realLocation(platform::absoluteLocation(change.file)).native();
    const auto [first, isNew] = seen.try_emplace(std::move(file), &change);
    const FileChange& other = *first->second;
    if (isNew || (other.tags == change.tags && other.selected == change.selected)) continue;
    throw JSON::DecodingError(placeOf(other) + " and " + placeOf(change) + " are the same file");
  }
}

/// Returns the change with the tags as the store returns them after they are written.
QuillmarkKit::TagChange accepted(const FileChange& change, const QuillmarkKit::MP3TagStore& store) {
  try {
    return {.tags = store.accepted(change.tags, change.selected), .selected = change.selected};
  } catch (const std::exception& error) {
    const std::string_view reason = error.what();
    throw JSON::DecodingError(placeOf(change) + ": " +
                              std::string(reason.substr(0, reason.find_last_not_of('.') + 1)));
  }
}

/// Returns the run that writes the tags in a document in the form of `read --json`. `word` names the
/// document's file, "-" is standard input. Throws CLIError for a mistake in the document, for two of its
/// members that name the same file, and for files or fields on the command line; and FileError if the
/// document cannot be read.
WriteRun prepareFromDocument(std::string_view word, const Arguments& arguments) {
  requireNothingBeside(arguments);
  auto store = storeFor(arguments);
  const NamedInput document(word);
  std::vector<std::string> names;
  std::vector<QuillmarkKit::TagChange> changes;
  try {
    if (document.isTooLong()) {
      throw JSON::DecodingError("the document is longer than 1 GiB; read --no-artwork makes a shorter one");
    }
    auto decoded = QuillmarkKit::changesIn(platform::charactersOf(document.bytes));
    requireDifferentFiles(decoded);
    for (FileChange& change : decoded) {
      changes.push_back(accepted(change, *store));
      names.push_back(std::move(change.file));
    }
  } catch (const JSON::DecodingError& error) {
    throw CLIError(platform::lastPathComponent(document.file) + ": " + error.what() + ".");
  }
  return {.files = FileList(std::move(names)), .store = std::move(store), .changes = std::move(changes)};
}

}  // namespace

WriteRun prepareSet(const Arguments& arguments, Console&) {
  if (const auto document = arguments.value(options::fromJSON)) {
    return prepareFromDocument(*document, arguments);
  }
  FileList files(arguments);
  TagSet tags;
  TagFields selected;
  for (const auto& [name, value] : arguments.options) {
    const auto field = QuillmarkKit::fieldFromCliName(name);
    if (!field) continue;
    setField(*field, name, value, tags);
    selected.insert(*field);
  }
  if (const auto list = arguments.value(options::clear)) selected.insert(fieldsNamed(*list));
  if (selected.isEmpty()) throw CLIError("set needs at least one field, e.g. --artist \"Väskelund\".");
  auto store = storeFor(arguments);
  tags = store->accepted(tags, selected);
  return {.files = std::move(files),
          .store = std::move(store),
          .changes = {{.tags = std::move(tags), .selected = selected}}};
}

}  // namespace quillmark
