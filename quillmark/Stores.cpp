#include "quillmark/Stores.h"

#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "QuillmarkKit/store/LosslessTagStore.h"
#include "platform/FileError.h"

namespace quillmark {

std::unique_ptr<const QuillmarkKit::TagStore> storeFor(const Arguments& arguments, Console& console) {
  constexpr bool preservesDate = true;
  std::unique_ptr<QuillmarkKit::MP3TagStore> store;
  if (arguments.has(options::lossless)) {
    store = std::make_unique<QuillmarkKit::LosslessTagStore>(preservesDate);
  } else {
    store = std::make_unique<QuillmarkKit::ID3TagEditorStore>(preservesDate);
  }
  store->keepsBackup = arguments.has(options::backup);
  if (console.wantsNotes()) {
    store->tellLosses([&console](const std::filesystem::path& url, const std::string& losses) {
      console.printNote(platform::lastPathComponent(url) + ": " + losses);
    });
  }
  return store;
}

}  // namespace quillmark
