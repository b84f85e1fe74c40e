#include <algorithm>

#include "QuillmarkKit/model/TagSetJSON.h"
#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "platform/FileError.h"
#include "platform/JSON.h"
#include "platform/Text.h"
#include "quillmark/Commands.h"
#include "quillmark/FileLocations.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagSet;
using QuillmarkKit::TagStore;
namespace JSON = platform::JSON;

namespace {

void list(const TagSet& tags, StandardOutput& output) {
  std::vector<std::pair<std::string_view, std::string>> lines;
  std::size_t width = 0;
  for (const TagField field : QuillmarkKit::allTagFields) {
    auto value = tags.value(field);
    if (!value) continue;
    lines.emplace_back(displayName(field), std::move(*value));
    width = std::max(width, displayName(field).size());
  }
  if (lines.empty()) output.write("  (no tags)\n");
  for (const auto& [label, value] : lines) {
    output.write("  " + std::string(label) + std::string(width - label.size(), ' ') + "  " + value + "\n");
  }
}

void readAsText(Words paths, const TagStore& store, StandardOutput& output) {
  bool first = true;
  for (const std::filesystem::path& file : urls(paths)) {
    // Nobody is there to read what else would come.
    if (output.failure() != 0) return;
    if (!first) output.write("\n");
    first = false;
    if (paths.size() > 1) output.write(platform::lastPathComponent(file) + ":\n");
    list(store.read(file), output);
  }
}

void readAsJSON(Words paths, const TagStore& store, StandardOutput& output) {
  JSON::Object files;
  for (const std::filesystem::path& file : urls(paths)) {
    files.insert_or_assign(platform::Text::fromUTF8Lossily(file.native()),
                           QuillmarkKit::encodeTagSet(store.read(file)));
  }
  output.write(JSON::print(std::move(files), JSON::Layout::pretty) + "\n");
}

}  // namespace

int commandRead(Words words, StandardOutput& output) {
  const Arguments arguments(words, {});
  const QuillmarkKit::ID3TagEditorStore store(true);
  const auto readAll = arguments.hasFlag("json") ? readAsJSON : readAsText;
  readAll(arguments.positional, store, output);
  return 0;
}

}  // namespace quillmark
