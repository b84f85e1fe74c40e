#include <algorithm>

#include "QuillmarkKit/model/TagSetJSON.h"
#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "platform/FileError.h"
#include "platform/JSON.h"
#include "platform/Text.h"
#include "quillmark/Commands.h"
#include "quillmark/FileList.h"
#include "quillmark/Progress.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagSet;
using QuillmarkKit::TagStore;
namespace JSON = platform::JSON;

namespace {

void list(const TagSet& tags, Console& console) {
  std::vector<std::pair<std::string_view, std::string>> lines;
  std::size_t width = 0;
  for (const TagField field : QuillmarkKit::allTagFields) {
    auto value = tags.value(field);
    if (!value) continue;
    lines.emplace_back(displayName(field), std::move(*value));
    width = std::max(width, displayName(field).size());
  }
  if (lines.empty()) console.write("  (no tags)\n");
  for (const auto& [label, value] : lines) {
    console.write("  " + std::string(label) + std::string(width - label.size(), ' ') + "  " +
                  console.shown(value, width + 4) + "\n");
  }
}

void readAsText(const FileList& files, const TagStore& store, Console& console) {
  Progress progress(files.size(), console);
  for (std::size_t i = 0; i < files.size(); ++i) {
    // Nobody is there to read what else would come.
    if (console.failure() != 0) return;
    const std::filesystem::path file = files.location(i);
    progress.next(file);
    if (i > 0) console.write("\n");
    if (files.size() > 1) console.write(console.shown(platform::lastPathComponent(file)) + ":\n");
    list(store.read(file), console);
  }
}

void readAsJSON(const FileList& files, const TagStore& store, Console& console) {
  JSON::Object document;
  Progress progress(files.size(), console);
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::filesystem::path file = files.location(i);
    progress.next(file);
    document.insert_or_assign(platform::Text::fromUTF8Lossily(file.native()),
                              QuillmarkKit::encodeTagSet(store.read(file)));
  }
  console.write(JSON::print(std::move(document), JSON::Layout::pretty) + "\n");
}

}  // namespace

int commandRead(const Arguments& arguments, Console& console) {
  const QuillmarkKit::ID3TagEditorStore store(true);
  const auto readAll = arguments.has(options::json) ? readAsJSON : readAsText;
  readAll(FileList(arguments), store, console);
  return 0;
}

}  // namespace quillmark
