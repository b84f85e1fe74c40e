#include "ID3v2/Unsynchronisation.h"

namespace ID3v2 {

bool isUnsynchronised(platform::ByteView bytes) {
  for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
    if (bytes[i] == 0xFF && bytes[i + 1] >= 0xE0) return false;
  }
  return bytes.empty() || bytes.back() != 0xFF;
}

platform::Bytes unsynchronisationUndone(platform::ByteView bytes) {
  platform::Bytes undone;
  undone.reserve(bytes.size());
  bool isAfterFF = false;
  for (const std::uint8_t byte : bytes) {
    if (!isAfterFF || byte != 0) undone.push_back(byte);
    isAfterFF = byte == 0xFF;
  }
  return undone;
}

}  // namespace ID3v2
