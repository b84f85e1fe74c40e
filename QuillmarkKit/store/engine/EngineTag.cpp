#include "QuillmarkKit/store/engine/EngineTag.h"

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/engine/ID3Frames.h"
#include "QuillmarkKit/store/engine/TagConversion.h"

namespace QuillmarkKit {

EngineTag::EngineTag(const ID3TagEditor::ID3TagEditor& editor, MP3File& file)
    : editor_(editor), file_(file), length_(editor.tagLength(file.handle())) {
  if (!length_) return;
  const auto tag = editor.read(file.tagBytes().slice(0, static_cast<std::size_t>(*length_)));
  if (tag) tags_ = tagSetFrom(*tag);
}

NewTag EngineTag::changedBy(const TagChange& change) {
  const ID3Frames::UnmanagedFrames carried(file_.tagBytes());
  if (change.tags.isEmpty() && !carried.empty()) {
    return {.bytes = ID3Frames::tagData(carried, file_.path()), .audioStart = carried.audioStart()};
  }
  ID3TagEditor::ID3Tag tag = makeTag(change.tags);
  platform::Bytes bytes = editor_.tagData(tag, carried.size());
  if (!carried.empty()) ID3Frames::appendTo(bytes, carried, file_.path());
  return {.bytes = std::move(bytes), .audioStart = length_.value_or(0)};
}

}  // namespace QuillmarkKit
