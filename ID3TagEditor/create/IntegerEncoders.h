#pragma once

#include <array>
#include <cstdint>

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

}  // namespace ID3TagEditor
