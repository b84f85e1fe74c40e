#pragma once

#include "ID3TagEditor/create/FrameCreators.h"
#include "ID3TagEditor/create/FrameHeaders.h"
#include "ID3TagEditor/model/FrameLayouts.h"

namespace ID3TagEditor {

/// Serialises all frames of a tag.
class ID3FramesCreator {
 public:
  /// Appends the frames in their fixed order, then `platform::usualPadding` zero bytes, with capacity for
  /// `spare` more bytes. Throws `invalidTagData` if there is no frame to write, and `tagTooBig` if a frame is
  /// too long for the size field of v2.2.
  void createFramesUsing(const ID3Tag& id3Tag, platform::Bytes& output, std::size_t spare = 0) const;

 private:
  FrameCreators id3FrameCreators_ = ID3FrameCreatorsFactory::make();
};

/// Makes the ten bytes of a tag header (ID3v2.3.0 §3.1).
class ID3TagHeaderCreator {
 public:
  /// Returns a header with the size `contentSize` and without flags. Sets the size in the tag's properties.
  platform::Bytes createTagHeader(std::uint32_t contentSize, ID3Tag& id3Tag) const;

 private:
  UInt32ToByteArrayAdapter uInt32ToByteArrayAdapter_;
  ID3TagConfiguration id3TagConfiguration_;
};

/// Turns a tag into bytes.
class ID3TagCreator {
 public:
  /// The size of the smallest tag that is too big, in bytes, header included.
  static constexpr std::uint64_t tagSizeLimit = platform::synchsafeLimit;

  /// Returns the header, the frames and the padding, with capacity for `spare` more bytes. Sets the size in
  /// the tag's properties. Throws `invalidTagData` if there is no frame to write, and `tagTooBig` if the tag
  /// reaches `tagSizeLimit`; the size is then already set.
  platform::Bytes create(ID3Tag& id3Tag, std::size_t spare = 0) const;

 private:
  ID3FramesCreator id3FramesCreator_;
  ID3TagHeaderCreator id3TagHeaderCreator_;
};

struct ID3TagCreatorFactory {
  static ID3TagCreator make() { return {}; }
};

}  // namespace ID3TagEditor
