#pragma once

#include "ID3TagEditor/create/ID3FrameCreatorsFactory.h"

namespace ID3TagEditor {

/// Serialises all frames of a tag.
class ID3FramesCreator {
 public:
  /// The zero bytes behind the frames.
  static constexpr std::size_t paddingSize = 2048;

  explicit ID3FramesCreator(FrameCreators id3FrameCreators)
      : id3FrameCreators_(std::move(id3FrameCreators)) {}

  /// Appends the frames in their fixed order, then the padding. Throws `invalidTagData` when there is no
  /// frame to write, `tagTooBig` for a frame that the size field of v2.2 cannot tell.
  void createFramesUsing(const ID3Tag& id3Tag, platform::Bytes& output) const;

 private:
  FrameCreators id3FrameCreators_;
};

}  // namespace ID3TagEditor
