#include "ID3TagEditor/parse/ID3FrameParser.h"

#include "platform/base/Strings.h"

namespace ID3TagEditor {

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

}  // namespace ID3TagEditor
