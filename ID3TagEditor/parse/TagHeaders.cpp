#include "ID3TagEditor/parse/TagHeaders.h"

#include <algorithm>

#include "platform/base/Formats.h"

namespace ID3TagEditor {

std::uint32_t SynchsafeIntegerDecoder::decode(std::uint32_t integer) const {
  return platform::numberFromSynchsafe(integer);
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
  return SynchsafeIntegerDecoder().decode(platform::bigEndian(data.subspan(tagBytesOffset, 4)));
}

}  // namespace ID3TagEditor
