#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/Bytes.h"

namespace ID3v2 {

/// A frame as it stands in its tag, before anything in it is looked at.
struct RawFrame {
  /// Three characters in v2.2, else four.
  std::string identifier;
  /// The two flag bytes as they stand; 0 in v2.2.
  std::uint16_t flags = 0;
  /// Header and content.
  platform::SharedBytes whole;
  /// What follows the header.
  platform::SharedBytes content;
  /// The size stands in the form that v2.3 gives it.
  bool hasPlainSize = false;

  /// The identifier as people read it.
  std::string name() const { return identifier.substr(0, identifier.find('\0')); }
};

/// The frames in some bytes.
struct FrameWalk {
  std::vector<RawFrame> frames;
  /// Where the last frame ends.
  std::size_t end = 0;
  /// Nothing but padding follows.
  bool isComplete = false;
};

/// The frames from `start` on, which must lie in the body, as tags and chapters of the version hold them
/// (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). Sizes are synchsafe in v2.4 and plain before;
/// where only the other reading of a size leads to a next frame or to the end, that is taken, unless the
/// frame would reach into the padding. Frames without content are left out.
FrameWalk walkFrames(const platform::SharedBytes& body, std::size_t start, std::uint8_t version);

/// Whether a frame with a size that fits starts there.
bool isFrameLikelyAt(platform::ByteView body, std::size_t at, std::uint8_t version);

/// Whether a frame, or nothing but padding, follows from there on.
bool leadsOn(platform::ByteView body, std::size_t at, std::uint8_t version);

}  // namespace ID3v2
