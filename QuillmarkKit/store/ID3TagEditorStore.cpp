#include "QuillmarkKit/store/ID3TagEditorStore.h"

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/FileTags.h"
#include "QuillmarkKit/store/ID3Frames.h"
#include "QuillmarkKit/store/MP3Check.h"
#include "QuillmarkKit/store/TagConversion.h"
#include "QuillmarkKit/store/TagFileError.h"
#include "QuillmarkKit/store/TagLosses.h"

namespace QuillmarkKit {

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
    : MP3TagStore(preservesDate), editor_(std::make_unique<const ID3TagEditor::ID3TagEditor>()) {
}

ID3TagEditorStore::~ID3TagEditorStore() = default;

TagSet ID3TagEditorStore::tagsIn(platform::FileHandle& file) const {
  const auto tag = naming(file.path(), [&] { return editor_->read(file); });
  return tag ? tagSetFrom(*tag) : TagSet();
}

TagSet ID3TagEditorStore::readSource(const std::filesystem::path& from, TagFields fields) const {
  platform::FileHandle file = openMP3(from);
  TagSet tags = tagsIn(file);
  if (tellsLosses()) tell(from, TagLosses::ofReading(readTags(file), tags, fields));
  return tags;
}

MP3TagStore::NewTag ID3TagEditorStore::newTag(const Change& change, platform::FileHandle& file) const {
  NewTag tag = newTagWith(change.tags, file);
  if (!tellsLosses()) return tag;
  const TagFields asked = change.differing ? *change.differing : tagsIn(file).differing(change.tags);
  tag.losses = TagLosses::ofWriting(readTags(file), change.tags, asked, tag.bytes);
  return tag;
}

MP3TagStore::NewTag ID3TagEditorStore::newTagWith(const TagSet& tags, platform::FileHandle& file) const {
  const std::filesystem::path& url = file.path();
  const ID3Frames::FrameData unmanaged = ID3Frames::unmanagedFrameData(file);
  if (tags.isEmpty() && !unmanaged.bytes.empty()) {
    return {.bytes = ID3Frames::tagData(unmanaged, url), .audioStart = unmanaged.audioStart};
  }
  const std::uint64_t audioStart = naming(url, [&] { return editor_->tagLength(file); }).value_or(0);
  ID3TagEditor::ID3Tag tag = makeTag(tags);
  platform::Bytes bytes = naming(url, [&] { return editor_->tagData(tag); });
  if (unmanaged.bytes.empty()) return {.bytes = std::move(bytes), .audioStart = audioStart};
  return {.bytes = ID3Frames::appending(unmanaged, std::move(bytes), url), .audioStart = audioStart};
}

}  // namespace QuillmarkKit
