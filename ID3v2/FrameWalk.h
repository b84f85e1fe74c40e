#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/base/Bytes.h"

namespace ID3v2 {

/// A frame as it stands in its tag, before anything in it is looked at.
struct RawFrame {
  /// Three characters in v2.2, else four.
  std::string identifier;
  /// The two flag bytes as they stand; 0 in v2.2.
  std::uint16_t flags = 0;
  /// Header and content.
  platform::SharedBytes whole;
  /// The bytes after the header. Empty for a frame without content, which no standard allows.
  platform::SharedBytes content;
  /// Whether the size is in the form that the version gives it.
  bool hasOwnSize = false;

  /// Whether the identifier is one of v2.2, in a later tag with a zero byte behind it.
  bool isOfV22() const { return identifier.size() == 3 || identifier[3] == '\0'; }
  /// The identifier as people read it.
  std::string name() const { return identifier.substr(0, identifier.find('\0')); }
};

/// More than any program writes. What many small frames take up in memory is far more than their bytes.
inline constexpr std::size_t mostFrames = 0x8000;

/// The frames in some bytes.
struct FrameWalk {
  std::vector<RawFrame> frames;
  /// Where the last frame ends.
  std::size_t end = 0;
  /// Nothing but padding follows.
  bool isComplete = false;
  /// The last frame ends in zero bytes, as the padding behind it does.
  bool mayHoldPadding = false;

  bool isSound() const { return isComplete && !mayHoldPadding; }
};

/// The frames from `start` on, which must lie in the body, as tags and chapters of the version hold them
/// (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). Sizes are synchsafe in v2.4 and plain before;
/// where that does not lead through all frames, but the other reading of all sizes does, or of some, that is
/// taken. The walk ends after `limit` frames.
FrameWalk walkFrames(const platform::SharedBytes& body, std::size_t start, std::uint8_t version,
                     std::size_t limit = mostFrames);

/// Whether a frame with a size that fits starts there.
bool isFrameLikelyAt(platform::ByteView body, std::size_t at, std::uint8_t version);

/// Whether a frame, or nothing but padding, follows from there on.
bool leadsOn(platform::ByteView body, std::size_t at, std::uint8_t version);

}  // namespace ID3v2
