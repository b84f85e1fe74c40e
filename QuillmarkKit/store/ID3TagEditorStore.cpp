#include "QuillmarkKit/store/ID3TagEditorStore.h"

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/ID3Frames.h"
#include "QuillmarkKit/store/MP3Check.h"
#include "QuillmarkKit/store/TagConversion.h"
#include "QuillmarkKit/store/TagFileError.h"
#include "platform/FileHandle.h"
#include "platform/FileManager.h"

namespace QuillmarkKit {

namespace FileManager = platform::FileManager;

namespace {

/// Runs an operation of the engine; an error of it gets the file's name.
template <class Operation>
auto naming(const std::filesystem::path& url, Operation operation) {
  try {
    return operation();
  } catch (const ID3TagEditor::ID3TagEditorError& error) {
    throw TagFileError(error, url);
  }
}

}  // namespace

ID3TagEditorStore::ID3TagEditorStore(bool preservesDate)
    : editor_(std::make_unique<const ID3TagEditor::ID3TagEditor>()),
      preservesModificationDate(preservesDate) {
}

ID3TagEditorStore::~ID3TagEditorStore() = default;

TagSet ID3TagEditorStore::read(const std::filesystem::path& from) const {
  verifyMP3(from);
  const auto tag = naming(from, [&] { return editor_->read(from); });
  return tag ? tagSetFrom(*tag) : TagSet();
}

void ID3TagEditorStore::write(const TagSet& tags, const std::filesystem::path& to) const {
  verifyMP3(to);
  const auto modificationDate = FileManager::modificationDate(to);
  const platform::ItemReplacementDirectory temporary(to);
  platform::FileHandle file = platform::FileHandle::forReading(to);
  const ID3Frames::FrameData unmanaged = ID3Frames::unmanagedFrameData(file);
  const std::filesystem::path assembled = temporary.path() / to.filename();
  if (tags.isEmpty() && !unmanaged.bytes.empty()) {
    ID3Frames::write(unmanaged, to, assembled);
  } else {
    ID3TagEditor::ID3TagEditor::TagRevision revision;
    // The frames join the tag before it is written, so that the audio has to be copied only once.
    if (!unmanaged.bytes.empty()) {
      revision = [&](platform::Bytes tag) { return ID3Frames::appending(unmanaged, std::move(tag), to); };
    }
    ID3TagEditor::ID3Tag tag = makeTag(tags);
    naming(to, [&] { editor_->write(tag, to, assembled, revision); });
  }
  // Dated before it takes the target's place, the file has its old date from the first moment on.
  if (preservesModificationDate && modificationDate) {
    FileManager::setModificationDate(assembled, *modificationDate);
  }
  FileManager::replaceItem(to, assembled);
}

}  // namespace QuillmarkKit
