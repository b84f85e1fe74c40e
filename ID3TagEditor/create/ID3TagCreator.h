#pragma once

#include <memory>

#include "ID3TagEditor/create/ID3FramesCreator.h"
#include "ID3TagEditor/create/IntegerEncoders.h"
#include "ID3TagEditor/model/ID3TagConfiguration.h"

namespace ID3TagEditor {

/// Makes the ten bytes in front of the frames (ID3v2.3.0 §3.1).
class ID3TagHeaderCreator {
 public:
  explicit ID3TagHeaderCreator(std::unique_ptr<UInt32ToByteArrayAdapter> uInt32ToByteArrayAdapter)
      : uInt32ToByteArrayAdapter_(std::move(uInt32ToByteArrayAdapter)) {}
  /// The header for `contentSize` bytes, no flag set; the tag's properties get that size.
  platform::Bytes createTagHeader(std::uint32_t contentSize, ID3Tag& id3Tag) const;

 private:
  std::unique_ptr<UInt32ToByteArrayAdapter> uInt32ToByteArrayAdapter_;
  ID3TagConfiguration id3TagConfiguration_;
};

/// Turns a tag into bytes.
class ID3TagCreator {
 public:
  /// A tag of this many bytes or more, header included, is too big.
  static constexpr std::uint64_t tagSizeLimit = platform::synchsafeLimit;

  ID3TagCreator(ID3FramesCreator id3FramesCreator, ID3TagHeaderCreator id3TagHeaderCreator)
      : id3FramesCreator_(std::move(id3FramesCreator)),
        id3TagHeaderCreator_(std::move(id3TagHeaderCreator)) {}

  /// Returns header, frames and padding, with capacity for `spare` more bytes; the tag's properties get the
  /// new size. Throws `invalidTagData` if there is no frame to write, and `tagTooBig` if the tag reaches the
  /// limit; the size is then already the new one.
  platform::Bytes create(ID3Tag& id3Tag, std::size_t spare = 0) const;

 private:
  ID3FramesCreator id3FramesCreator_;
  ID3TagHeaderCreator id3TagHeaderCreator_;
};

struct ID3TagCreatorFactory {
  static ID3TagCreator make();
};

}  // namespace ID3TagEditor
