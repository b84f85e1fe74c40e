#pragma once

#include "ID3TagEditor/model/ID3FrameConfiguration.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/parse/FrameContentParsingOperationFactories.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

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

}  // namespace ID3TagEditor
