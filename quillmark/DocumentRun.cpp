#include "quillmark/DocumentRun.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "QuillmarkKit/transfer/TagDocument.h"
#include "platform/FileError.h"
#include "platform/Input.h"
#include "platform/Paths.h"
#include "platform/base/JSON.h"
#include "quillmark/CLIError.h"
#include "quillmark/Stores.h"

namespace quillmark {

using QuillmarkKit::FileChange;
namespace JSON = platform::JSON;

namespace {

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

/// Replaces the tags by the form in which the store returns them after they are written.
void accept(std::vector<FileChange>& changes, const QuillmarkKit::TagStore& store) {
  for (FileChange& change : changes) {
    try {
      change.tags = store.accepted(change.tags, change.selected);
    } catch (const std::exception& error) {
      const std::string_view reason = error.what();
      throw JSON::DecodingError(placeOf(change) + ": " +
                                std::string(reason.substr(0, reason.find_last_not_of('.') + 1)));
    }
  }
}

std::vector<FileChange> changesIn(const std::filesystem::path& file, bool isStandardInput,
                                  const QuillmarkKit::TagStore& store) {
  // An endless input is cut here.
  constexpr std::uint64_t limit = std::uint64_t{1} << 30;
  const platform::Bytes document = isStandardInput ? platform::Input::contentsOfStandardInput(limit)
                                                   : platform::Input::contents(file, limit);
  try {
    if (document.size() == limit) {
      throw JSON::DecodingError("the document is longer than 1 GiB; read --no-artwork makes a shorter one");
    }
    auto changes = QuillmarkKit::changesIn(platform::charactersOf(document));
    requireDifferentFiles(changes);
    accept(changes, store);
    return changes;
  } catch (const JSON::DecodingError& error) {
    throw CLIError(platform::lastPathComponent(file) + ": " + error.what() + ".");
  }
}

FileList filesOf(const std::vector<FileChange>& changes) {
  platform::Bytes names;
  for (const FileChange& change : changes) {
    platform::append(names, platform::bytesOf(change.file));
    names.push_back(0);
  }
  return FileList(std::move(names));
}

}  // namespace

WriteRun prepareFromDocument(std::string_view word, const Arguments& arguments) {
  requireNothingBeside(arguments);
  auto store = storeFor(arguments);
  const bool isStandardInput = word == "-";
  const std::filesystem::path file = isStandardInput ? "standard input" : platform::fileLocation(word);
  auto changes = changesIn(file, isStandardInput, *store);
  FileList files = filesOf(changes);
  return {.files = std::move(files),
          .store = std::move(store),
          .tags = {},
          .selection = {},
          .options = RunOptions(arguments),
          .changes = std::move(changes)};
}

}  // namespace quillmark
