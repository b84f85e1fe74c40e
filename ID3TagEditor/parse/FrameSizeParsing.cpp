#include "ID3TagEditor/parse/FrameSizeParsing.h"

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
  return std::uint64_t{frameContentSizeParser_->parse(mp3, framePosition, version)} +
         id3FrameConfiguration_.headerSizeFor(version);
}

}  // namespace ID3TagEditor
