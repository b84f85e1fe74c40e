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

/// Returns the name of data in the tag that is not a frame, or an empty text. Frames that cannot be read have
/// an identifier.
std::string damageOf(const FileTags& tags) {
  const auto part = std::ranges::find(tags.unreadable, "", &ID3v2::UnreadablePart::identifier);
  return part != tags.unreadable.end() ? part->what : "";
}

}  // namespace

CopiedTag::CopiedTag(MP3File& file, platform::SharedBytes newTag, bool keepsAPETag)
    : path_(file.path()), newTag_(std::move(newTag)), keepsAPETag_(keepsAPETag) {
  const FileTags old = readTags(file);
  hasAPETag_ = old.hasAPETag;
  hasOnlyID3v1Tag_ = !old.hasID3v2Tag && !old.tag.frames.empty();
  damage_ = damageOf(old);
  isSame_ = tagBytesOf(file, old) == newTag_;
  audioStart_ = old.audioStart;
  tags_ = LosslessConversion::fieldsOf(old.tag);
  file.dropTagBytes();
}

NewTag CopiedTag::changedBy(const TagChange&) {
  if (hasAPETag_ && keepsAPETag_) throw LosslessError::hidesAPETag(path_);
  if (!damage_.empty()) throw LosslessError::cannotReplaceTag(path_, damage_);
  std::string losses = hasOnlyID3v1Tag_ ? "hides its ID3v1 tag" : "";
  if (hasAPETag_) losses += losses.empty() ? "hides its APE tag" : "; hides its APE tag";
  if (!losses.empty()) losses += ".";
  return {.bytes = newTag_, .audioStart = audioStart_, .losses = std::move(losses)};
}

platform::SharedBytes wholeTag(const std::filesystem::path& path) {
  MP3File file(path);
  const FileTags tags = readTags(file);
  if (!tags.hasID3v2Tag) throw LosslessError::cannotCopyTag(path, "it has none");
  if (const std::string damage = damageOf(tags); !damage.empty())
    throw LosslessError::cannotCopyTag(path, damage + " cannot be read");
  // The header announces more bytes than the tag has if its footer is missing.
  if (file.tagBytes().size() != tags.audioStart)
    throw LosslessError::cannotCopyTag(path, "its footer is missing");
  return tagBytesOf(file, tags);
}

}  // namespace QuillmarkKit
