#pragma once

#include "ID3TagEditor/create/ID3FrameCreatorsFactory.h"

namespace ID3TagEditor {

/// Serialises all frames of a tag.
class ID3FramesCreator {
 public:
  explicit ID3FramesCreator(FrameCreators id3FrameCreators)
      : id3FrameCreators_(std::move(id3FrameCreators)) {}

  /// Appends the frames in their fixed order, then `platform::usualPadding` zero bytes, with capacity for
  /// `spare` more bytes. Throws `invalidTagData` if there is no frame to write, and `tagTooBig` if a frame is
  /// too long for the size field of v2.2.
  void createFramesUsing(const ID3Tag& id3Tag, platform::Bytes& output, std::size_t spare = 0) const;

 private:
  FrameCreators id3FrameCreators_;
};

}  // namespace ID3TagEditor
