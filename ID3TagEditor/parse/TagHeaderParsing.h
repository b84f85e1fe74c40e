#pragma once

#include <cstdint>

#include "ID3TagEditor/model/ID3TagConfiguration.h"
#include "ID3TagEditor/model/ID3Version.h"
#include "platform/base/Bytes.h"

// What the ten bytes of a tag header say (ID3v2.3.0 §3.1). Buffers begin with the first byte of the file.
namespace ID3TagEditor {

/// Decodes the four 7-bit groups of a synchsafe integer (ID3v2.4.0 structure §6.2).
class SynchsafeIntegerDecoder {
 public:
  /// The top bit of each byte is dropped unseen; the result is below 2^28.
  std::uint32_t decode(std::uint32_t integer) const;
};

class TagVersionParser {
 public:
  virtual ~TagVersionParser() = default;
  virtual ID3Version parse(platform::ByteView mp3) const = 0;
};

/// Takes the major version byte; anything that is no known version counts as version 3.
class ID3TagVersionParser : public TagVersionParser {
 public:
  ID3Version parse(platform::ByteView mp3) const override;

 private:
  static constexpr std::size_t versionBytesOffset = 3;
};

class TagPresence {
 public:
  virtual ~TagPresence() = default;
  virtual bool isTagPresentIn(platform::ByteView mp3, ID3Version version) const = 0;
};

/// A tag is there when the buffer starts with the version's prefix, revision 0 included.
class ID3TagPresence : public TagPresence {
 public:
  bool isTagPresentIn(platform::ByteView mp3, ID3Version version) const override;

 private:
  ID3TagConfiguration id3TagConfiguration_;
};

class TagSizeParser {
 public:
  virtual ~TagSizeParser() = default;
  /// The bytes of the tag behind its header. The buffer must hold the whole header.
  virtual std::uint32_t parse(platform::ByteView data) const = 0;
};

class ID3TagSizeParser : public TagSizeParser {
 public:
  std::uint32_t parse(platform::ByteView data) const override;

 private:
  static constexpr std::size_t tagBytesOffset = 6;
};

}  // namespace ID3TagEditor
