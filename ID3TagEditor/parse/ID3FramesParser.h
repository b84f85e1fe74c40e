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

  /// Adds the frames to the tag, whose properties must contain its size and version. The buffer must contain
  /// the whole tag, header included. The walk stops ten bytes before the end of the tag, or at the first
  /// frame that does not fit; it never fails. Padding is passed over as frames of unknown kinds.
  void parse(const platform::SharedBytes& mp3, ID3Tag& id3Tag) const;

 private:
  std::unique_ptr<FrameSizeParser> frameSizeParser_;
  ID3FrameParser id3FrameParser_;
};

}  // namespace ID3TagEditor
