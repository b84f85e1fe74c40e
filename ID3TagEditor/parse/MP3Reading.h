#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/FrameTables.h"
#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

// Finds the tag at the start of an MP3: by the ten bytes of its header (ID3v2.3.0 §3.1), and in a file.
// Buffers begin with the first byte of the file.
namespace ID3TagEditor {

/// Decodes the four 7-bit groups of a synchsafe integer (ID3v2.4.0 structure §6.2).
class SynchsafeIntegerDecoder {
 public:
  /// Returns a number below 2^28. Ignores the top bit of each byte.
  std::uint32_t decode(std::uint32_t integer) const { return platform::numberFromSynchsafe(integer); }
};

/// Reads the major version byte. Any unknown version counts as version 3.
class ID3TagVersionParser {
 public:
  ID3Version parse(platform::ByteView mp3) const {
    if (mp3.size() <= versionBytesOffset) return ID3Version::version3;
    return versionFromRawValue(mp3[versionBytesOffset]).value_or(ID3Version::version3);
  }

 private:
  static constexpr std::size_t versionBytesOffset = 3;
};
using TagVersionParser = ID3TagVersionParser;

/// Returns whether the buffer starts with "ID3", the version and revision 0.
class ID3TagPresence {
 public:
  bool isTagPresentIn(platform::ByteView mp3, ID3Version version) const {
    const platform::ByteView prefix = id3TagConfiguration_.headerFor(version);
    return mp3.size() >= prefix.size() && std::ranges::equal(mp3.first(prefix.size()), prefix);
  }

 private:
  ID3TagConfiguration id3TagConfiguration_;
};
using TagPresence = ID3TagPresence;

class ID3TagSizeParser {
 public:
  /// Returns the number of bytes of the tag after its header. The buffer must contain the whole header.
  std::uint32_t parse(platform::ByteView data) const {
    return SynchsafeIntegerDecoder().decode(platform::bigEndian(data.subspan(tagBytesOffset, 4)));
  }

 private:
  static constexpr std::size_t tagBytesOffset = 6;
};
using TagSizeParser = ID3TagSizeParser;

/// Reads the tag of a file without reading the audio.
class Mp3FileReader {
 public:
  /// Returns the file's tag, header included, or nothing if the file does not start with a tag of a known
  /// version. Throws `invalidFileFormat` if the extension is not "mp3", `corruptedFile` if the file is
  /// shorter than a tag header or ends before its tag does, and platform::FileError.
  std::optional<platform::Bytes> readID3TagFrom(const std::filesystem::path& path) const;

  /// Returns the length of the open file's tag in bytes, from the tag's header alone, or nothing if the file
  /// does not start with a tag of a known version. Throws `corruptedFile` and platform::FileError as
  /// `readID3TagFrom` does. Does not check the file's name.
  std::optional<std::uint64_t> tagLength(platform::FileHandle& file) const;

 private:
  TagSizeParser tagSizeParser_;
  TagVersionParser tagVersionParser_;
  TagPresence tagPresence_;
};

struct Mp3FileReaderFactory {
  static Mp3FileReader make() { return {}; }
};

}  // namespace ID3TagEditor
