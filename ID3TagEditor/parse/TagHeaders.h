#pragma once

#include <algorithm>
#include <cstdint>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/FrameTables.h"
#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

// Reads the ten bytes of a tag header (ID3v2.3.0 §3.1). Buffers begin with the first byte of the file.
namespace ID3TagEditor {

/// Decodes the four 7-bit groups of a synchsafe integer (ID3v2.4.0 structure §6.2).
class SynchsafeIntegerDecoder {
 public:
  /// Returns a number below 2^28. Ignores the top bit of each byte.
  std::uint32_t decode(std::uint32_t integer) const { return platform::numberFromSynchsafe(integer); }
};

class TagVersionParser {
 public:
  virtual ~TagVersionParser() = default;
  virtual ID3Version parse(platform::ByteView mp3) const = 0;
};

/// Reads the major version byte. Any unknown version counts as version 3.
class ID3TagVersionParser : public TagVersionParser {
 public:
  ID3Version parse(platform::ByteView mp3) const override {
    if (mp3.size() <= versionBytesOffset) return ID3Version::version3;
    return versionFromRawValue(mp3[versionBytesOffset]).value_or(ID3Version::version3);
  }

 private:
  static constexpr std::size_t versionBytesOffset = 3;
};

class TagPresence {
 public:
  virtual ~TagPresence() = default;
  virtual bool isTagPresentIn(platform::ByteView mp3, ID3Version version) const = 0;
};

/// Returns whether the buffer starts with "ID3", the version and revision 0.
class ID3TagPresence : public TagPresence {
 public:
  bool isTagPresentIn(platform::ByteView mp3, ID3Version version) const override {
    const platform::ByteView prefix = id3TagConfiguration_.headerFor(version);
    return mp3.size() >= prefix.size() && std::ranges::equal(mp3.first(prefix.size()), prefix);
  }

 private:
  ID3TagConfiguration id3TagConfiguration_;
};

class TagSizeParser {
 public:
  virtual ~TagSizeParser() = default;
  /// Returns the number of bytes of the tag after its header. The buffer must contain the whole header.
  virtual std::uint32_t parse(platform::ByteView data) const = 0;
};

class ID3TagSizeParser : public TagSizeParser {
 public:
  std::uint32_t parse(platform::ByteView data) const override {
    return SynchsafeIntegerDecoder().decode(platform::bigEndian(data.subspan(tagBytesOffset, 4)));
  }

 private:
  static constexpr std::size_t tagBytesOffset = 6;
};

}  // namespace ID3TagEditor
