#pragma once

#include <optional>
#include <string_view>
#include <utility>

#include "ID3TagEditor/model/ID3AttachedPictureFrameConfiguration.h"
#include "ID3TagEditor/model/ID3FrameConfiguration.h"
#include "ID3TagEditor/model/ID3Frames.h"
#include "platform/base/Bytes.h"

// How structured values are read out of a frame's text or bytes.
namespace ID3TagEditor {

/// Reads a genre text (ID3v2.3.0 §4.2.1, "TCON"): a number, RX or CR in parentheses, a text behind it, or
/// both.
class ID3GenreStringAdapter {
 public:
  /// Only the first pair of parentheses around word characters counts, and what stands before it is dropped;
  /// what names no genre in it goes behind the description.
  ID3FrameGenre adapt(std::string_view genre) const;
};

class PartOfTotalStringAdapter {
 public:
  virtual ~PartOfTotalStringAdapter() = default;
  virtual ID3FramePartOfTotal adapt(std::string_view partOfTotal) const = 0;
};

/// Reads "3/12" or "3" (ID3v2.3.0 §4.2.1, "TRCK", "TPOS"); a part that is no number is 0, a total that is
/// none is absent.
class ID3PartOfTotalStringAdapter : public PartOfTotalStringAdapter {
 public:
  ID3FramePartOfTotal adapt(std::string_view partOfTotal) const override;
};

/// Reads two numbers of the same length (ID3v2.3.0 §4.2.1, "TDAT", "TIME"); the middle character of an odd
/// count is ignored.
class ID3CoupleOfNumbersAdapter {
 public:
  std::pair<OptionalInteger, OptionalInteger> adapt(std::string_view coupleOfNumbers) const;
};

class PictureTypeAdapter {
 public:
  virtual ~PictureTypeAdapter() = default;
  /// Nothing when the frame, given whole, is too short to have a picture type byte.
  virtual std::optional<ID3PictureType> adapt(platform::ByteView frame, ID3PictureFormat format,
                                              ID3Version version) const = 0;
};

/// Reads the picture type byte where it stands behind the MIME type that the engine itself writes
/// (ID3v2.3.0 §4.15); a byte that is no picture type is `other`.
class ID3PictureTypeAdapter : public PictureTypeAdapter {
 public:
  std::optional<ID3PictureType> adapt(platform::ByteView frame, ID3PictureFormat format,
                                      ID3Version version) const override;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  ID3AttachedPictureFrameConfiguration id3AttachedPictureFrameConfiguration_;
};

}  // namespace ID3TagEditor
