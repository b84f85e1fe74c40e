#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ID3TagEditor/model/Enumerations.h"
#include "ID3TagEditor/model/FrameTables.h"
#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

namespace ID3TagEditor {

/// The fixed parts of a tag header (ID3v2.3.0 §3.1).
class ID3TagConfiguration {
 public:
  /// Returns the first five bytes of the header: "ID3", the major version and revision 0.
  platform::ByteView headerFor(ID3Version version) const { return headers[columnOf(version)]; }
  /// Returns the length of the whole header in bytes, which is the same in all versions.
  static constexpr std::uint32_t headerSize() { return platform::tagHeaderSize; }

 private:
  static constexpr std::array<std::array<std::uint8_t, 5>, 3> headers{
      {{'I', 'D', '3', 2, 0}, {'I', 'D', '3', 3, 0}, {'I', 'D', '3', 4, 0}}};
};

/// The layout of a frame in each version (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4):
/// identifier, big-endian size without the header, flags (not in v2.2), body. The first byte of a text's body
/// is the encoding. All lengths and offsets are in bytes.
class ID3FrameConfiguration {
 public:
  std::size_t headerSizeFor(ID3Version version) const { return layoutOf(version).headerSize; }
  /// Returns the offset of the four bytes that contain the size. In v2.2, the first of them is the last one
  /// of the identifier.
  std::size_t sizeOffsetFor(ID3Version version) const { return layoutOf(version).sizeOffset; }
  /// Returns the bits of these four bytes that are the size.
  std::uint32_t sizeMaskFor(ID3Version version) const { return layoutOf(version).sizeMask; }
  std::size_t identifierSizeFor(ID3Version version) const { return layoutOf(version).identifierSize; }
  /// Returns the offset of the text-encoding byte from the start of the frame.
  std::size_t encodingPositionFor(ID3Version version) const { return layoutOf(version).headerSize; }
  static constexpr std::size_t encodingSize() { return 1; }

  /// Returns the identifier in ASCII. Aborts the program if the version lacks the kind: the tag builders let
  /// no such frame into a tag.
  std::string_view identifierFor(FrameType frameType, ID3Version version) const;
  /// Returns `invalid` for an identifier that is unknown in the version.
  FrameType frameTypeFor(std::string_view identifier, ID3Version version) const;
  /// Returns the text-encoding byte to write. Aborts the program for UTF-8 in other versions than v2.4.
  std::uint8_t encodingByteFor(ID3Version version, ID3StringEncoding encoding) const;

 private:
  struct Layout {
    std::size_t headerSize;
    std::size_t sizeOffset;
    std::uint32_t sizeMask;
    std::size_t identifierSize;
  };
  static constexpr std::array<Layout, 3> layouts{
      {{6, 2, 0x00FFFFFF, 3}, {10, 4, 0xFFFFFFFF, 4}, {10, 4, 0xFFFFFFFF, 4}}};

  static constexpr const Layout& layoutOf(ID3Version version) { return layouts[columnOf(version)]; }
};

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
