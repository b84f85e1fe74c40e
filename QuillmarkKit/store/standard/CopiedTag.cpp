#include "QuillmarkKit/store/standard/CopiedTag.h"

#include <algorithm>
#include <utility>

#include "QuillmarkKit/store/standard/FileTags.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/LosslessError.h"

namespace QuillmarkKit {

namespace {

/// Returns the bytes before the audio.
platform::SharedBytes tagBytesOf(MP3File& file, const FileTags& tags) {
  return file.tagBytes().slice(0, static_cast<std::size_t>(tags.audioStart));
}

}  // namespace

CopiedTag::CopiedTag(MP3File& file, platform::SharedBytes newTag, bool keepsAPETag)
    : path_(file.path()), newTag_(std::move(newTag)), keepsAPETag_(keepsAPETag) {
  const FileTags old = readTags(file);
  hasAPETag_ = old.hasAPETag;
  isSame_ = tagBytesOf(file, old) == newTag_;
  audioStart_ = old.audioStart;
  tags_ = LosslessConversion::fieldsOf(old.tag);
  file.dropTagBytes();
}

NewTag CopiedTag::changedBy(const TagChange&) {
  if (hasAPETag_ && keepsAPETag_) throw LosslessError::hidesAPETag(path_);
  return {.bytes = newTag_, .audioStart = audioStart_, .losses = hasAPETag_ ? "hides its APE tag." : ""};
}

platform::SharedBytes wholeTag(const std::filesystem::path& path) {
  MP3File file(path);
  const FileTags tags = readTags(file);
  if (!tags.hasID3v2Tag) throw LosslessError::cannotCopyTag(path, "it has none");
  // A part without an identifier is not a frame. Frames that cannot be read are copied like the others.
  const auto damage = std::ranges::find(tags.unreadable, "", &ID3v2::UnreadablePart::identifier);
  if (damage != tags.unreadable.end())
    throw LosslessError::cannotCopyTag(path, damage->what + " cannot be read");
  return tagBytesOf(file, tags);
}

}  // namespace QuillmarkKit
