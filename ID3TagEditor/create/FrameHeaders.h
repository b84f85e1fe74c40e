#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "ID3TagEditor/model/FrameLayouts.h"
#include "platform/base/Bytes.h"
#include "platform/base/Formats.h"

// The two encodings of sizes.
namespace ID3TagEditor {

class SynchsafeEncoder {
 public:
  virtual ~SynchsafeEncoder() = default;
  virtual std::uint32_t encode(std::uint32_t integer) const = 0;
};

/// Spreads a value below 2^28 over four 7-bit groups (ID3v2.4.0 structure §6.2).
class SynchsafeIntegerEncoder : public SynchsafeEncoder {
 public:
  std::uint32_t encode(std::uint32_t integer) const override { return platform::synchsafe(integer); }
};

class UInt32ToByteArrayAdapter {
 public:
  virtual ~UInt32ToByteArrayAdapter() = default;
  virtual std::array<std::uint8_t, 4> adapt(std::uint32_t uInt32) const = 0;
};

/// Returns the bytes in big-endian order, independent of the machine's byte order.
class UInt32ToByteArrayAdapterUsingUnsafePointer : public UInt32ToByteArrayAdapter {
 public:
  std::array<std::uint8_t, 4> adapt(std::uint32_t uInt32) const override {
    return platform::bigEndianBytes(uInt32);
  }
};

// Writes frame headers (ID3v2.2.0 §3.2, ID3v2.3.0 §3.3, ID3v2.4.0 structure §4). All operations append to
// `output`, so that a long body can be appended in place and is not moved again.

class FrameContentSizeCalculator {
 public:
  virtual ~FrameContentSizeCalculator() = default;
  /// Appends the size field for a body of `contentSize` bytes.
  virtual void calculateSizeOf(std::uint64_t contentSize, ID3Version version,
                               platform::Bytes& output) const = 0;
};

/// Writes three plain bytes in v2.2, four plain bytes in v2.3 and four synchsafe bytes in v2.4.
class ID3FrameContentSizeCalculator : public FrameContentSizeCalculator {
 public:
  ID3FrameContentSizeCalculator(std::unique_ptr<UInt32ToByteArrayAdapter> uInt32ToByteArrayAdapter,
                                std::unique_ptr<SynchsafeEncoder> synchsafeEncoder)
      : uInt32ToByteArrayAdapter_(std::move(uInt32ToByteArrayAdapter)),
        synchsafeEncoder_(std::move(synchsafeEncoder)) {}
  /// Throws `tagTooBig` if the size does not fit into the field of v2.2. The fields of the other versions can
  /// hold more than fits into a tag.
  void calculateSizeOf(std::uint64_t contentSize, ID3Version version, platform::Bytes& output) const override;

 private:
  std::unique_ptr<UInt32ToByteArrayAdapter> uInt32ToByteArrayAdapter_;
  std::unique_ptr<SynchsafeEncoder> synchsafeEncoder_;
};

class FrameFlagsCreator {
 public:
  virtual ~FrameFlagsCreator() = default;
  virtual void createFor(ID3Version version, platform::Bytes& output) const = 0;
};

/// Writes frame flags that are all zero.
class ID3FrameFlagsCreator : public FrameFlagsCreator {
 public:
  void createFor(ID3Version version, platform::Bytes& output) const override;
};

class FrameHeaderCreator {
 public:
  virtual ~FrameHeaderCreator() = default;
  /// Appends the header for a body of `bodySize` bytes.
  virtual void createUsing(ID3Version version, FrameType frameType, std::uint64_t bodySize,
                           platform::Bytes& output) const = 0;
};

class ID3FrameHeaderCreator : public FrameHeaderCreator {
 public:
  ID3FrameHeaderCreator(std::unique_ptr<FrameContentSizeCalculator> frameContentSizeCalculator,
                        std::unique_ptr<FrameFlagsCreator> frameFlagsCreator)
      : frameContentSizeCalculator_(std::move(frameContentSizeCalculator)),
        frameFlagsCreator_(std::move(frameFlagsCreator)) {}
  /// Throws `tagTooBig` if the size does not fit into the field of v2.2.
  void createUsing(ID3Version version, FrameType frameType, std::uint64_t bodySize,
                   platform::Bytes& output) const override;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  std::unique_ptr<FrameContentSizeCalculator> frameContentSizeCalculator_;
  std::unique_ptr<FrameFlagsCreator> frameFlagsCreator_;
};

struct ID3FrameHeaderCreatorFactory {
  static std::unique_ptr<FrameHeaderCreator> make();
};

}  // namespace ID3TagEditor
