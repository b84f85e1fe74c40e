#include "ID3TagEditor/parse/FrameWalk.h"

#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "platform/base/Strings.h"

namespace ID3TagEditor {

std::uint32_t ID3FrameContentSizeParser::parse(platform::ByteView mp3, std::size_t framePosition,
                                               ID3Version version) const {
  const std::uint32_t field =
      platform::bigEndian(mp3.subspan(framePosition + id3FrameConfiguration_.sizeOffsetFor(version), 4)) &
      id3FrameConfiguration_.sizeMaskFor(version);
  return version == ID3Version::version4 ? synchsafeIntegerDecoder_.decode(field) : field;
}

std::uint64_t ID3FrameSizeParser::parse(platform::ByteView mp3, std::size_t framePosition,
                                        ID3Version version) const {
  return std::uint64_t{frameContentSizeParser_.parse(mp3, framePosition, version)} +
         id3FrameConfiguration_.headerSizeFor(version);
}

void ID3FrameParser::parse(const platform::SharedBytes& mp3, std::size_t framePosition, std::size_t frameSize,
                           ID3Tag& id3Tag) const {
  const ID3Version version = id3Tag.properties.version;
  const auto identifier =
      mp3.view().subspan(framePosition, id3FrameConfiguration_.identifierSizeFor(version));
  const FrameType type = id3FrameConfiguration_.frameTypeFor(platform::charactersOf(identifier), version);
  // Padding arrives here one frame header at a time, as frames of unknown types. Leaving early keeps that
  // fast.
  if (type == FrameType::invalid) return;
  const auto operation = frameContentParsingOperations_.find(type);
  if (operation == frameContentParsingOperations_.end()) return;
  const platform::SharedBytes frame = mp3.slice(framePosition, frameSize);
  operation->second->parse(frame, version, [&](FrameName name, std::unique_ptr<ID3Frame> parsed) {
    parsed->id3Identifier = platform::Strings::fromLatin1(identifier);
    parsed->size = frameSize;
    id3Tag.frames.insert_or_assign(name, std::move(parsed));
  });
}

void ID3FramesParser::parse(const platform::SharedBytes& mp3, ID3Tag& id3Tag) const {
  // The position counts from the start of the header, the size from its end. Comparing them stops the walk
  // ten bytes before the end of the tag, so that every frame header that is read lies within the tag.
  const std::uint64_t size = id3Tag.properties.size;
  std::uint64_t position = ID3TagConfiguration::headerSize();
  while (position < size) {
    const auto start = static_cast<std::size_t>(position);
    const std::uint64_t total = frameSizeParser_.parse(mp3, start, id3Tag.properties.version);
    if (total >= size || position + total > mp3.size()) return;
    id3FrameParser_.parse(mp3, start, static_cast<std::size_t>(total), id3Tag);
    position += total;
  }
}

std::optional<ID3Tag> ID3TagParser::parse(const platform::SharedBytes& mp3) const {
  const ID3Version version = tagVersionParser_.parse(mp3);
  if (!tagPresence_.isTagPresentIn(mp3, version)) return std::nullopt;
  if (mp3.size() < ID3TagConfiguration::headerSize())
    throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  ID3Tag tag(version);
  tag.properties.size = tagSizeParser_.parse(mp3);
  if (mp3.size() < std::uint64_t{tag.properties.size} + ID3TagConfiguration::headerSize()) {
    throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  }
  framesParser_.parse(mp3, tag);
  return tag;
}

}  // namespace ID3TagEditor
