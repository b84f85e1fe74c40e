#pragma once

#include <array>
#include <cstdint>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

// Writes sizes and frame headers (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). The operations on
// frames append to `output`, so that a long body can be appended in place and is not moved again.
namespace ID3TagEditor {

/// Spreads a value below 2^28 over four 7-bit groups (ID3v2.4.0 structure §6.2).
class SynchsafeIntegerEncoder {
 public:
  std::uint32_t encode(std::uint32_t integer) const { return platform::synchsafe(integer); }
};
using SynchsafeEncoder = SynchsafeIntegerEncoder;

/// Returns the bytes in big-endian order, independent of the machine's byte order.
class UInt32ToByteArrayAdapterUsingUnsafePointer {
 public:
  std::array<std::uint8_t, 4> adapt(std::uint32_t uInt32) const { return platform::bigEndianBytes(uInt32); }
};
using UInt32ToByteArrayAdapter = UInt32ToByteArrayAdapterUsingUnsafePointer;

/// Writes the size field: three plain bytes in v2.2, four plain bytes in v2.3 and four synchsafe bytes in
/// v2.4.
class ID3FrameContentSizeCalculator {
 public:
  /// Appends the size field for a body of `contentSize` bytes. Throws `tagTooBig` if the size does not fit
  /// into the field of v2.2. The fields of the other versions can hold more than fits into a tag.
  void calculateSizeOf(std::uint64_t contentSize, ID3Version version, platform::Bytes& output) const {
    // Only the size field of v2.2 is checked here: a frame that is too long for that of another version makes
    // the whole tag too big, and the tag is then refused.
    constexpr std::uint64_t version2Limit = std::uint64_t{1} << 24;
    if (version == ID3Version::version2 && contentSize >= version2Limit) {
      throw ID3TagEditorError(ID3TagEditorError::tagTooBig);
    }
    const auto size = static_cast<std::uint32_t>(contentSize);
    const auto field = uInt32ToByteArrayAdapter_.adapt(
        version == ID3Version::version4 ? synchsafeEncoder_.encode(size) : size);
    platform::append(output, platform::ByteView(field).subspan(version == ID3Version::version2 ? 1 : 0));
  }

 private:
  UInt32ToByteArrayAdapter uInt32ToByteArrayAdapter_;
  SynchsafeEncoder synchsafeEncoder_;
};
using FrameContentSizeCalculator = ID3FrameContentSizeCalculator;

/// Writes frame flags that are all zero.
class ID3FrameFlagsCreator {
 public:
  void createFor(ID3Version version, platform::Bytes& output) const {
    if (version != ID3Version::version2) output.insert(output.end(), {0x00, 0x00});
  }
};
using FrameFlagsCreator = ID3FrameFlagsCreator;

class ID3FrameHeaderCreator {
 public:
  /// Appends the header for a body of `bodySize` bytes. Throws `tagTooBig` if the size does not fit into the
  /// field of v2.2.
  void createUsing(ID3Version version, FrameType frameType, std::uint64_t bodySize,
                   platform::Bytes& output) const {
    platform::append(output, platform::bytesOf(id3FrameConfiguration_.identifierFor(frameType, version)));
    frameContentSizeCalculator_.calculateSizeOf(bodySize, version, output);
    frameFlagsCreator_.createFor(version, output);
  }

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  FrameContentSizeCalculator frameContentSizeCalculator_;
  FrameFlagsCreator frameFlagsCreator_;
};
using FrameHeaderCreator = ID3FrameHeaderCreator;

struct ID3FrameHeaderCreatorFactory {
  static FrameHeaderCreator make() { return {}; }
};

}  // namespace ID3TagEditor
