#include "QuillmarkKit/store/FileTags.h"

#include <algorithm>
#include <utility>

#include "ID3v2/TagsAtTheEnd.h"
#include "QuillmarkKit/store/FieldFrames.h"

namespace QuillmarkKit {

namespace {

constexpr std::size_t headerSize = 10;

void readTagsAtTheEnd(platform::FileHandle& file, FileTags& tags) {
  file.seek(file.size() - std::min<std::uint64_t>(file.size(), ID3v2::endSize));
  const platform::Bytes end = file.read(ID3v2::endSize);
  if (auto tag = ID3v2::readID3v1(end)) tags.tag = std::move(*tag);
  tags.hasAPETag = ID3v2::hasAPETag(end);
}

bool isOf(TagFields fields, std::string_view identifier) {
  return std::ranges::any_of(allTagFields, [&](TagField field) {
    return fields.contains(field) && FieldFrames::isOf(field, identifier);
  });
}

}  // namespace

bool FileTags::hasUnreadable(TagFields fields) const {
  return std::ranges::any_of(
      unreadable, [&](const ID3v2::UnreadablePart& part) { return isOf(fields, part.identifier); });
}

std::string FileTags::unreadableFor(TagFields fields) const {
  for (const ID3v2::UnreadablePart& part : unreadable) {
    if (part.identifier.empty() || isOf(fields, part.identifier)) return part.what;
  }
  return hasAPETag ? "its APE tag" : "";
}

FileTags readTags(platform::FileHandle& file) {
  FileTags tags;
  const platform::ByteView header = file.start().first(std::min(headerSize, file.start().size()));
  const auto length = ID3v2::tagLength(header);
  if (!length) {
    readTagsAtTheEnd(file, tags);
    return tags;
  }
  const auto present = static_cast<std::size_t>(std::min(*length, file.size()));
  platform::Bytes bytes;
  bytes.reserve(present);
  platform::append(bytes, header);
  file.seek(headerSize);
  if (present > headerSize) file.readOnto(bytes, present - headerSize);
  tags.hasID3v2Tag = true;
  tags.audioStart = present;
  if (auto reading = ID3v2::read(platform::SharedBytes(std::move(bytes)))) {
    // A tag may announce a footer that is not there; these bytes are audio.
    tags.audioStart = std::min(reading->length, present);
    tags.tag = std::move(reading->tag);
    tags.unreadable = std::move(reading->unreadable);
  }
  return tags;
}

}  // namespace QuillmarkKit
