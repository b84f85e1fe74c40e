#include "QuillmarkKit/store/standard/FileTags.h"

#include <algorithm>
#include <utility>

#include "ID3v2/TagsAtTheEnd.h"

namespace QuillmarkKit {

namespace {

void readTagsAtTheEnd(MP3File& file, FileTags& tags) {
  const platform::Bytes end = file.lastBytes(ID3v2::endSize);
  if (auto tag = ID3v2::readID3v1(end)) tags.tag = std::move(*tag);
  tags.hasAPETag = ID3v2::hasAPETag(end);
}

bool isOf(TagFields fields, std::string_view identifier) {
  return std::ranges::any_of(
      allTagFields, [&](TagField field) { return fields.contains(field) && isFrameOf(field, identifier); });
}

}  // namespace

bool FileTags::isWritable() const {
  return std::ranges::all_of(unreadable, &ID3v2::UnreadablePart::isFrame);
}

bool FileTags::hasUnreadable(TagFields fields) const {
  return std::ranges::any_of(
      unreadable, [&](const ID3v2::UnreadablePart& part) { return isOf(fields, part.identifier); });
}

std::vector<std::string> FileTags::unreadablePartsFor(TagFields fields) const {
  std::vector<std::string> parts;
  for (const ID3v2::UnreadablePart& part : unreadable) {
    if (part.identifier.empty() || isOf(fields, part.identifier)) parts.push_back(part.what);
  }
  if (hasAPETag) parts.emplace_back("its APE tag");
  return parts;
}

FileTags readTags(MP3File& file) {
  FileTags tags;
  if (!ID3v2::tagLength(file.handle().start())) {
    readTagsAtTheEnd(file, tags);
    return tags;
  }
  tags.hasID3v2Tag = true;
  const platform::SharedBytes& bytes = file.tagBytes();
  tags.audioStart = bytes.size();
  if (auto reading = ID3v2::read(bytes)) {
    // The header may announce a footer that is missing; the bytes in its place are audio.
    tags.audioStart = std::min<std::uint64_t>(reading->length, bytes.size());
    tags.tag = std::move(reading->tag);
    tags.unreadable = std::move(reading->unreadable);
  }
  return tags;
}

}  // namespace QuillmarkKit
