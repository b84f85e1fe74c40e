#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "ID3TagEditor/model/FrameType.h"
#include "ID3TagEditor/model/ID3StringEncoding.h"
#include "ID3TagEditor/model/ID3Version.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// How a frame lies on disk in each version (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4):
/// identifier, big-endian size that does not count the header, flags (not in v2.2), then the body, whose
/// first byte tells the encoding where the body is text. All lengths and offsets are in bytes.
class ID3FrameConfiguration {
 public:
  std::size_t headerSizeFor(ID3Version version) const { return layoutOf(version).headerSize; }
  /// Where the four bytes begin that hold the size; in v2.2 the first of them is the identifier's last.
  std::size_t sizeOffsetFor(ID3Version version) const { return layoutOf(version).sizeOffset; }
  /// What of these four bytes is the size.
  std::uint32_t sizeMaskFor(ID3Version version) const { return layoutOf(version).sizeMask; }
  std::size_t identifierSizeFor(ID3Version version) const { return layoutOf(version).identifierSize; }
  /// Where the text-encoding byte stands, counted from the frame's start.
  std::size_t encodingPositionFor(ID3Version version) const { return layoutOf(version).headerSize; }
  static constexpr std::size_t encodingSize() { return 1; }

  /// The identifier's ASCII characters. A kind that the version lacks is an error in the program and ends it:
  /// the tag builders let no such frame into a tag.
  std::string_view identifierFor(FrameType frameType, ID3Version version) const;
  /// `invalid` for an identifier that the version does not know.
  FrameType frameTypeFor(std::string_view identifier, ID3Version version) const;
  /// The text-encoding byte to write. UTF-8 outside v2.4 is an error in the program and ends it.
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

}  // namespace ID3TagEditor
