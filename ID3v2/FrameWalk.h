#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

namespace ID3v2 {

using platform::tagHeaderSize;

inline constexpr std::uint8_t experimentalFlag = 0x20;

/// The header of a tag (ID3v2.2.0 §3.1, ID3v2.3.0 §3.1, ID3v2.4.0 structure §3.1).
struct TagHeader {
  /// The major version: 2, 3 or 4.
  std::uint8_t version = 3;
  bool isUnsynchronised = false;
  bool hasExtendedHeader = false;
  bool hasFooter = false;
  bool isExperimental = false;
  /// The number of bytes between header and footer.
  std::uint32_t bodySize = 0;

  /// Returns the length of the whole tag in bytes, header and footer included.
  std::uint64_t length() const {
    return tagHeaderSize + std::uint64_t{bodySize} + (hasFooter ? tagHeaderSize : 0);
  }
};

/// Returns nothing unless a tag of v2.2, v2.3 or v2.4 starts there. Accepts any revision.
std::optional<TagHeader> tagHeader(platform::ByteView bytes);

/// Returns the length of the extended header at the start of the body (ID3v2.3.0 §3.2, ID3v2.4.0 structure
/// §3.2). The tag's flags must announce one. The size field counts itself in v2.4 and not in v2.3. Programs
/// confuse the two, so the length is also read in the other version's way if no frame or padding follows.
/// Returns 0 if neither length fits, or if a frame starts there in spite of the flag.
std::size_t extendedHeaderLength(platform::ByteView body, std::uint8_t version);

/// A frame as found in its tag, with its content not interpreted.
struct RawFrame {
  /// Three characters in v2.2, else four.
  std::string identifier;
  /// The two flag bytes of the header; 0 in v2.2.
  std::uint16_t flags = 0;
  /// Header and content.
  platform::SharedBytes whole;
  /// The bytes after the header. Empty for a frame without content, which no standard allows.
  platform::SharedBytes content;
  /// Whether the size is encoded as the version requires.
  bool hasOwnSize = false;

  /// Returns whether the identifier is one of v2.2. In a later tag, such an identifier ends in a zero byte.
  bool isOfV22() const { return identifier.size() == 3 || identifier[3] == '\0'; }
  /// Returns the identifier without the zero byte.
  std::string name() const { return identifier.substr(0, identifier.find('\0')); }
};

/// The largest number of frames that are read, more than any program writes. Limits the memory for many small
/// frames, which is far more than their bytes.
inline constexpr std::size_t mostFrames = 0x8000;

/// The result of a walk over the frames of a tag or chapter.
struct FrameWalk {
  std::vector<RawFrame> frames;
  /// The offset of the end of the last frame.
  std::size_t end = 0;
  /// Whether only padding follows the last frame.
  bool isComplete = false;
  /// Whether the last frame ends in zero bytes and may thus contain some of the padding.
  bool mayHoldPadding = false;

  bool isSound() const { return isComplete && !mayHoldPadding; }
};

/// Finds the frames from `start` on, as tags and chapters of the version contain them (ID3v2.2.0 §3.2,
/// ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). `start` must not be after the end of the body. Reads sizes as
/// synchsafe numbers in v2.4 and as plain numbers before. If these do not lead through all frames, uses the
/// other encoding for all or for some of the sizes, if that leads further. Stops after `limit` frames.
FrameWalk walkFrames(const platform::SharedBytes& body, std::size_t start, std::uint8_t version,
                     std::size_t limit = mostFrames);

/// Returns whether a frame with a size that fits seems to start at `at`.
bool isFrameLikelyAt(platform::ByteView body, std::size_t at, std::uint8_t version);

/// Returns whether a frame, or only padding, starts at `at`.
bool leadsOn(platform::ByteView body, std::size_t at, std::uint8_t version);

}  // namespace ID3v2
