#pragma once

#include <array>
#include <cstdint>

#include "ID3TagEditor/model/ID3Version.h"
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

}  // namespace ID3TagEditor
