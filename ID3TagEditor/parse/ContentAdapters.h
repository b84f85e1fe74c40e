#pragma once

#include <optional>
#include <string_view>
#include <utility>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/Bytes.h"

// Read structured values from a frame's text or bytes.
namespace ID3TagEditor {

/// Reads a genre text (ID3v2.3.0 §4.2.1, "TCON"): a number, RX or CR in parentheses, a text after it, or
/// both.
class ID3GenreStringAdapter {
 public:
  /// Only the first pair of parentheses around word characters counts. The text before it is dropped. If the
  /// word does not name a genre, it is appended to the description, parentheses included.
  ID3FrameGenre adapt(std::string_view genre) const;
};

/// Reads "3/12" or "3" (ID3v2.3.0 §4.2.1, "TRCK", "TPOS"). A part that is not a number is read as 0. A total
/// that is not a number is absent.
class ID3PartOfTotalStringAdapter {
 public:
  ID3FramePartOfTotal adapt(std::string_view partOfTotal) const;
};
using PartOfTotalStringAdapter = ID3PartOfTotalStringAdapter;

/// Reads two numbers of the same length (ID3v2.3.0 §4.2.1, "TDAT", "TIME"). The middle character of an odd
/// count is ignored.
class ID3CoupleOfNumbersAdapter {
 public:
  std::pair<OptionalInteger, OptionalInteger> adapt(std::string_view coupleOfNumbers) const;
};

/// Reads the picture type byte from the place that it has in the frames that the engine writes (ID3v2.3.0
/// §4.15), whatever MIME type this frame has. Returns `other` if the byte is not a picture type.
class ID3PictureTypeAdapter {
 public:
  /// `frame` must be a whole frame, header included. Returns nothing if it is too short for a picture type
  /// byte.
  std::optional<ID3PictureType> adapt(platform::ByteView frame, ID3PictureFormat format,
                                      ID3Version version) const;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  ID3AttachedPictureFrameConfiguration id3AttachedPictureFrameConfiguration_;
};
using PictureTypeAdapter = ID3PictureTypeAdapter;

}  // namespace ID3TagEditor
