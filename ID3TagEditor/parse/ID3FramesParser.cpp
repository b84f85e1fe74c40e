#include "ID3TagEditor/parse/ID3FramesParser.h"

namespace ID3TagEditor {

void ID3FramesParser::parse(const platform::SharedBytes& mp3, ID3Tag& id3Tag) const {
  // Positions count from the header's start, the size from its end; comparing the two keeps the walk ten
  // bytes away from the tag's end, so that a frame's header always lies inside the tag.
  const std::uint64_t size = id3Tag.properties.size;
  std::uint64_t position = ID3TagConfiguration::headerSize();
  while (position < size) {
    const std::uint64_t total = frameSizeParser_->parse(mp3, position, id3Tag.properties.version);
    if (total >= size || position + total > mp3.size()) return;
    id3FrameParser_.parse(mp3, position, total, id3Tag);
    position += total;
  }
}

}  // namespace ID3TagEditor
