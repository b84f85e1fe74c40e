#pragma once

#include <memory>

#include "ID3TagEditor/model/ID3TagConfiguration.h"
#include "ID3TagEditor/parse/FrameSizeParsing.h"
#include "ID3TagEditor/parse/ID3FrameParser.h"

namespace ID3TagEditor {

/// Walks the frames of a tag.
class ID3FramesParser {
 public:
  ID3FramesParser(std::unique_ptr<FrameSizeParser> frameSizeParser, ID3FrameParser id3FrameParser)
      : frameSizeParser_(std::move(frameSizeParser)), id3FrameParser_(std::move(id3FrameParser)) {}

  /// Adds the frames to the tag, whose properties must tell its size and version; the buffer must hold the
  /// whole tag from its header on. The walk ends ten bytes before the tag does, and where a frame does not
  /// fit; it never fails. Padding passes as frames of no known kind.
  void parse(const platform::SharedBytes& mp3, ID3Tag& id3Tag) const;

 private:
  std::unique_ptr<FrameSizeParser> frameSizeParser_;
  ID3FrameParser id3FrameParser_;
};

}  // namespace ID3TagEditor
