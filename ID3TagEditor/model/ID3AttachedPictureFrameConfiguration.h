#pragma once

#include <cstddef>
#include <string_view>

#include "ID3TagEditor/model/ID3PictureFormat.h"
#include "ID3TagEditor/model/ID3Version.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// The start of the body of the picture frames that the engine writes (ID3v2.2.0 §4.15, ID3v2.3.0 §4.15):
/// encoding byte 0, the MIME type (in v2.2 the three-letter image format, without terminator), the picture
/// type, an empty description.
class ID3AttachedPictureFrameConfiguration {
 public:
  /// Returns the offset of the picture type byte from the start of the body.
  std::size_t getPictureTypeBytePositionFor(ID3PictureFormat pictureFormat, ID3Version version) const {
    return getHeaderMimeTypeFor(pictureFormat, version).size() - 2;
  }

  /// Returns the start of the body, with the picture type front cover.
  platform::ByteView getHeaderMimeTypeFor(ID3PictureFormat pictureFormat, ID3Version version) const {
    using namespace std::string_view_literals;
    const bool isJPEG = pictureFormat == ID3PictureFormat::jpeg;
    const std::string_view start = version == ID3Version::version2
                                       ? (isJPEG ? "\0JPG\3\0"sv : "\0PNG\3\0"sv)
                                       : (isJPEG ? "\0image/jpeg\0\3\0"sv : "\0image/png\0\3\0"sv);
    return platform::bytesOf(start);
  }
};

}  // namespace ID3TagEditor
