#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/parse/FrameOperations.h"
#include "ID3TagEditor/parse/TagHeaders.h"
#include "platform/base/Bytes.h"

// Reads the size field of a frame header (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). The buffer
// must contain the whole header of the frame at `framePosition`.
namespace ID3TagEditor {

class FrameContentSizeParser {
 public:
  virtual ~FrameContentSizeParser() = default;
  /// Returns the number of bytes after the frame's header, as its size field states.
  virtual std::uint32_t parse(platform::ByteView mp3, std::size_t framePosition,
                              ID3Version version) const = 0;
};

class ID3FrameContentSizeParser : public FrameContentSizeParser {
 public:
  std::uint32_t parse(platform::ByteView mp3, std::size_t framePosition, ID3Version version) const override;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  SynchsafeIntegerDecoder synchsafeIntegerDecoder_;
};

class FrameSizeParser {
 public:
  virtual ~FrameSizeParser() = default;
  /// Returns the number of bytes of the whole frame, header included.
  virtual std::uint64_t parse(platform::ByteView mp3, std::size_t framePosition,
                              ID3Version version) const = 0;
};

class ID3FrameSizeParser : public FrameSizeParser {
 public:
  explicit ID3FrameSizeParser(std::unique_ptr<FrameContentSizeParser> frameContentSizeParser)
      : frameContentSizeParser_(std::move(frameContentSizeParser)) {}
  std::uint64_t parse(platform::ByteView mp3, std::size_t framePosition, ID3Version version) const override;

 private:
  std::unique_ptr<FrameContentSizeParser> frameContentSizeParser_;
  ID3FrameConfiguration id3FrameConfiguration_;
};

class ID3FrameParser {
 public:
  explicit ID3FrameParser(FrameContentParsingOperations frameContentParsingOperations)
      : frameContentParsingOperations_(std::move(frameContentParsingOperations)) {}

  /// Adds the content of the frame at that position to the tag, replacing a frame of the same name. The
  /// buffer must contain the whole frame, which must be at least as long as its header. Ignores frames of
  /// unknown kinds and frames that cannot be read.
  void parse(const platform::SharedBytes& mp3, std::size_t framePosition, std::size_t frameSize,
             ID3Tag& id3Tag) const;

 private:
  FrameContentParsingOperations frameContentParsingOperations_;
  ID3FrameConfiguration id3FrameConfiguration_;
};

/// Walks the frames of a tag.
class ID3FramesParser {
 public:
  ID3FramesParser(std::unique_ptr<FrameSizeParser> frameSizeParser, ID3FrameParser id3FrameParser)
      : frameSizeParser_(std::move(frameSizeParser)), id3FrameParser_(std::move(id3FrameParser)) {}

  /// Adds the frames to the tag, whose properties must contain its size and version. The buffer must contain
  /// the whole tag, header included. The walk stops ten bytes before the end of the tag, or at the first
  /// frame that does not fit; it never fails. Padding is passed over as frames of unknown kinds.
  void parse(const platform::SharedBytes& mp3, ID3Tag& id3Tag) const;

 private:
  std::unique_ptr<FrameSizeParser> frameSizeParser_;
  ID3FrameParser id3FrameParser_;
};

class ID3TagParser {
 public:
  ID3TagParser(std::unique_ptr<TagSizeParser> tagSizeParser,
               std::unique_ptr<TagVersionParser> tagVersionParser, std::unique_ptr<TagPresence> tagPresence,
               ID3FramesParser framesParser)
      : tagSizeParser_(std::move(tagSizeParser)),
        tagVersionParser_(std::move(tagVersionParser)),
        tagPresence_(std::move(tagPresence)),
        framesParser_(std::move(framesParser)) {}

  /// Returns the tag at the start of the buffer, or nothing if there is no tag of a known version. Throws
  /// `corruptedFile` if the buffer ends before the tag does. Ignores the flags in the header.
  std::optional<ID3Tag> parse(const platform::SharedBytes& mp3) const;

 private:
  std::unique_ptr<TagSizeParser> tagSizeParser_;
  std::unique_ptr<TagVersionParser> tagVersionParser_;
  std::unique_ptr<TagPresence> tagPresence_;
  ID3FramesParser framesParser_;
};

struct ID3TagParserFactory {
  static ID3TagParser make();
};

}  // namespace ID3TagEditor
