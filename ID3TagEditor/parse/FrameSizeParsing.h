#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "ID3TagEditor/model/ID3FrameConfiguration.h"
#include "ID3TagEditor/parse/TagHeaderParsing.h"
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

}  // namespace ID3TagEditor
