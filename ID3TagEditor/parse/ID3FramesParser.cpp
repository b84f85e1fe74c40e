#include "ID3TagEditor/parse/ID3FramesParser.h"

namespace ID3TagEditor {

void ID3FramesParser::parse(const platform::SharedBytes& mp3, ID3Tag& id3Tag) const {
  // The position counts from the start of the header, the size from its end. Comparing them stops the walk
  // ten bytes before the end of the tag, so that every frame header that is read lies within the tag.
  const std::uint64_t size = id3Tag.properties.size;
  std::uint64_t position = ID3TagConfiguration::headerSize();
  while (position < size) {
    const auto start = static_cast<std::size_t>(position);
    const std::uint64_t total = frameSizeParser_->parse(mp3, start, id3Tag.properties.version);
    if (total >= size || position + total > mp3.size()) return;
    id3FrameParser_.parse(mp3, start, static_cast<std::size_t>(total), id3Tag);
    position += total;
  }
}

}  // namespace ID3TagEditor
