#include <filesystem>
#include <string>
#include <thread>

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/transfer/TagApplier.h"

using namespace QuillmarkKit;

namespace {

/// Makes two copies of the track, changes each of them twice, and counts the changes.
std::size_t changes(const MP3TagStore& store, const std::filesystem::path& track, const std::string& name) {
  const std::vector<std::filesystem::path> files{name + "1.mp3", name + "2.mp3"};
  for (const auto& file : files)
    std::filesystem::copy_file(track, file, std::filesystem::copy_options::overwrite_existing);
  std::size_t count = 0;
  TagSet tags;
  for (const char* album : {"A", "B"}) {
    tags.album = album;
    count += TagApplier::updatedCount(TagApplier(store).apply(tags, files, {TagField::album}, false));
  }
  return count;
}

}  // namespace

// Ends with 0 if the kit and the engine read the same title from the file, and if two threads, each with a
// store of its own, change files in one folder.
int main(int, char** arguments) {
  const std::filesystem::path file = arguments[1];
  const auto tag = ID3TagEditor::ID3TagEditor().read(file);
  const auto tags = ID3TagEditorStore(true).read(file);
  if (!tag || !tags.title || ID3TagEditor::ID3TagContentReader(*tag).title() != tags.title) return 1;
  std::size_t changed = 0;
  std::thread other([&] { changed = changes(ID3TagEditorStore(true), file, "a"); });
  const std::size_t lossless = changes(LosslessTagStore(true), file, "b");
  other.join();
  return changed == 4 && lossless == 4 ? 0 : 1;
}
