#include "ID3TagEditor/parse/ID3FrameParser.h"

#include "platform/Text.h"

namespace ID3TagEditor {

void ID3FrameParser::parse(const platform::SharedBytes& frame, std::size_t frameSize, ID3Tag& id3Tag) const {
  const ID3Version version = id3Tag.properties.version;
  const platform::ByteView identifier = frame.view().first(id3FrameConfiguration_.identifierSizeFor(version));
  const FrameType type = id3FrameConfiguration_.frameTypeFor(platform::charactersOf(identifier), version);
  const auto operation = frameContentParsingOperations_.find(type);
  if (operation == frameContentParsingOperations_.end()) return;
  operation->second->parse(frame, version, [&](FrameName name, std::unique_ptr<ID3Frame> parsed) {
    parsed->id3Identifier = platform::Text::fromLatin1(identifier);
    parsed->size = frameSize;
    id3Tag.frames.insert_or_assign(name, std::move(parsed));
  });
}

}  // namespace ID3TagEditor
