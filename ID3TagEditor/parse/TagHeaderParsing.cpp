#include "ID3TagEditor/parse/TagHeaderParsing.h"

#include <algorithm>

namespace ID3TagEditor {

std::uint32_t bigEndianAt(platform::ByteView bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes.subspan(offset, 4)) value = value << 8 | byte;
  return value;
}

std::uint32_t SynchsafeIntegerDecoder::decode(std::uint32_t integer) const {
  return (integer >> 24 & 0x7F) << 21 | (integer >> 16 & 0x7F) << 14 | (integer >> 8 & 0x7F) << 7 |
         (integer & 0x7F);
}

ID3Version ID3TagVersionParser::parse(platform::ByteView mp3) const {
  if (mp3.size() <= versionBytesOffset) return ID3Version::version3;
  return versionFromRawValue(mp3[versionBytesOffset]).value_or(ID3Version::version3);
}

bool ID3TagPresence::isTagPresentIn(platform::ByteView mp3, ID3Version version) const {
  const platform::ByteView prefix = id3TagConfiguration_.headerFor(version);
  return mp3.size() >= prefix.size() && std::ranges::equal(mp3.first(prefix.size()), prefix);
}

std::uint32_t ID3TagSizeParser::parse(platform::ByteView data) const {
  return SynchsafeIntegerDecoder().decode(bigEndianAt(data, tagBytesOffset));
}

}  // namespace ID3TagEditor
