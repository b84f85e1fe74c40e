#pragma once

#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Serialises the frames of one kind.
class ID3FrameCreator {
 public:
  virtual ~ID3FrameCreator() = default;
  /// Appends the tag's frames of this kind to `output`: none, one or several whole frames. Skips frames of
  /// the wrong class and frames that lack a value that has to be written.
  virtual void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const = 0;
};

}  // namespace ID3TagEditor
