#include "quillmark/Stores.h"

#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "QuillmarkKit/store/LosslessTagStore.h"
#include "QuillmarkKit/store/WholeTagStore.h"
#include "platform/FileError.h"

namespace quillmark {

namespace {

constexpr bool preservesDate = true;

}  // namespace

std::unique_ptr<const QuillmarkKit::MP3TagStore> storeFor(const Arguments& arguments) {
  std::unique_ptr<QuillmarkKit::MP3TagStore> store;
  if (arguments.has(options::lossless)) {
    store = std::make_unique<QuillmarkKit::LosslessTagStore>(preservesDate);
  } else {
    store = std::make_unique<QuillmarkKit::ID3TagEditorStore>(preservesDate);
  }
  store->keepsBackup = arguments.has(options::backup);
  return store;
}

std::unique_ptr<const QuillmarkKit::TagStore> wholeTagStore(const Arguments& arguments,
                                                            const std::filesystem::path& source) {
  auto store =
      std::make_unique<QuillmarkKit::WholeTagStore>(source, arguments.has(options::lossless), preservesDate);
  store->keepsBackup = arguments.has(options::backup);
  return store;
}

QuillmarkKit::TagStore::Source readSource(const QuillmarkKit::TagStore& store,
                                          const std::filesystem::path& from, QuillmarkKit::TagFields fields,
                                          Console& console, SourceOptions options) {
  auto source = store.source(from, fields, console.wantsNotes(), options.acceptsUnrepresentable);
  if (!source.losses.empty()) console.printNote(platform::lastPathComponent(from) + ": " + source.losses);
  return source;
}

}  // namespace quillmark
