#include "ID3v2/TagHeader.h"

#include "ID3v2/FrameWalk.h"
#include "ID3v2/Reading.h"

namespace ID3v2 {

std::optional<TagHeader> tagHeader(platform::ByteView bytes) {
  if (bytes.size() < tagHeaderSize || !platform::charactersOf(bytes).starts_with("ID3")) return std::nullopt;
  TagHeader header{.version = bytes[3]};
  if (header.version < 2 || header.version > 4) return std::nullopt;
  const std::uint8_t flags = bytes[5];
  header.isUnsynchronised = (flags & 0x80) != 0;
  header.hasExtendedHeader = header.version > 2 && (flags & 0x40) != 0;
  header.hasFooter = header.version == 4 && (flags & 0x10) != 0;
  header.isExperimental = header.version > 2 && (flags & experimentalFlag) != 0;
  header.bodySize = platform::numberFromSynchsafe(platform::bigEndian(bytes.subspan(6, 4)));
  return header;
}

std::optional<std::uint64_t> tagLength(platform::ByteView header) {
  const auto parsed = tagHeader(header);
  if (!parsed) return std::nullopt;
  return parsed->length();
}

std::size_t extendedHeaderLength(platform::ByteView body, std::uint8_t version) {
  constexpr std::size_t sizeField = 4;
  if (body.size() < sizeField || isFrameLikelyAt(body, 0, version)) return 0;
  const platform::ByteView field = body.first(sizeField);
  const std::size_t told =
      version == 4 ? platform::numberFromSynchsafe(platform::bigEndian(field)) : platform::bigEndian(field);
  const std::size_t usual = version == 4 ? told : told + sizeField;
  const std::size_t unusual = version == 4 ? told + sizeField : told;
  for (const std::size_t length : {usual, unusual}) {
    if (length > sizeField && leadsOn(body, length, version)) return length;
  }
  return 0;
}

}  // namespace ID3v2
