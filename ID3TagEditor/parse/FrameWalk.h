#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/parse/FrameOperations.h"
#include "ID3TagEditor/parse/MP3Reading.h"
#include "platform/base/Bytes.h"

// Reads a tag: its header, then one frame after the other.
namespace ID3TagEditor {

/// Reads the size field of a frame header (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). The
/// buffer must contain the whole header of the frame at `framePosition`.
class ID3FrameContentSizeParser {
 public:
  /// Returns the number of bytes after the frame's header, as its size field states.
  std::uint32_t parse(platform::ByteView mp3, std::size_t framePosition, ID3Version version) const;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  SynchsafeIntegerDecoder synchsafeIntegerDecoder_;
};
using FrameContentSizeParser = ID3FrameContentSizeParser;

class ID3FrameSizeParser {
 public:
  /// Returns the number of bytes of the whole frame, header included.
  std::uint64_t parse(platform::ByteView mp3, std::size_t framePosition, ID3Version version) const;

 private:
  FrameContentSizeParser frameContentSizeParser_;
  ID3FrameConfiguration id3FrameConfiguration_;
};
using FrameSizeParser = ID3FrameSizeParser;

class ID3FrameParser {
 public:
  /// Adds the content of the frame at that position to the tag, replacing a frame of the same name. The
  /// buffer must contain the whole frame, which must be at least as long as its header. Ignores frames of
  /// unknown kinds and frames that cannot be read.
  void parse(const platform::SharedBytes& mp3, std::size_t framePosition, std::size_t frameSize,
             ID3Tag& id3Tag) const;

 private:
  FrameContentParsingOperations frameContentParsingOperations_ =
      ID3FrameContentParsingOperationFactory::make();
  ID3FrameConfiguration id3FrameConfiguration_;
};

/// Walks the frames of a tag.
class ID3FramesParser {
 public:
  /// Adds the frames to the tag, whose properties must contain its size and version. The buffer must contain
  /// the whole tag, header included. The walk stops ten bytes before the end of the tag, or at the first
  /// frame that does not fit; it never fails. Padding is passed over as frames of unknown kinds.
  void parse(const platform::SharedBytes& mp3, ID3Tag& id3Tag) const;

 private:
  FrameSizeParser frameSizeParser_;
  ID3FrameParser id3FrameParser_;
};

class ID3TagParser {
 public:
  /// Returns the tag at the start of the buffer, or nothing if there is no tag of a known version. Throws
  /// `corruptedFile` if the buffer ends before the tag does. Ignores the flags in the header.
  std::optional<ID3Tag> parse(const platform::SharedBytes& mp3) const;

 private:
  TagSizeParser tagSizeParser_;
  TagVersionParser tagVersionParser_;
  TagPresence tagPresence_;
  ID3FramesParser framesParser_;
};

struct ID3TagParserFactory {
  static ID3TagParser make() { return {}; }
};

}  // namespace ID3TagEditor
