#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/base/Bytes.h"

namespace tests {

using namespace std::string_literals;
using namespace std::string_view_literals;

/// Builds the bytes of a tag of any version frame by frame, valid or not: `TagBytes(3).text("TIT2",
/// "Kyrie").frame("PRIV", "\1\2"s).padding(64).characters()`.
class TagBytes {
 public:
  explicit TagBytes(int version, std::uint8_t flags = 0, std::uint8_t revision = 0)
      : version_(version),
        start_("ID3"s + static_cast<char>(version) + static_cast<char>(revision) + static_cast<char>(flags)) {
  }

  /// Appends a frame with these bytes after its header.
  TagBytes& frame(std::string_view id, std::string_view body, std::uint16_t flags = 0) {
    return frameDeclaring(body.size(), id, body, flags);
  }
  /// Appends a text frame in ISO-8859-1.
  TagBytes& text(std::string_view id, std::string_view content) {
    return frame(id, "\0"s + std::string(content));
  }
  /// Appends a frame whose header states another size than that of its body.
  TagBytes& frameDeclaring(std::uint64_t size, std::string_view id, std::string_view body,
                           std::uint16_t flags = 0) {
    body_ += id;
    if (version_ == 2) return raw(bigEndian(size).substr(1)).raw(body);
    body_ += version_ == 4 ? synchsafe(size) : bigEndian(size);
    body_ += {static_cast<char>(flags >> 8), static_cast<char>(flags)};
    return raw(body);
  }
  TagBytes& raw(std::string_view bytes) {
    body_ += bytes;
    return *this;
  }
  TagBytes& padding(std::size_t count) { return raw(std::string(count, '\0')); }

  /// Returns the bytes of the tag.
  std::string characters() const { return declaring(body_.size()); }
  operator std::string() const { return characters(); }
  /// Returns the bytes of the tag with another size in its header than that of its body.
  std::string declaring(std::uint64_t size) const { return start_ + synchsafe(size) + body_; }

  static std::string bigEndian(std::uint64_t value) { return grouped(value, 8, 0xFF); }
  static std::string synchsafe(std::uint64_t value) { return grouped(value, 7, 0x7F); }

 private:
  static std::string grouped(std::uint64_t value, unsigned bits, std::uint8_t mask) {
    std::string field;
    for (unsigned group = 4; group-- > 0;) field += static_cast<char>(value >> (bits * group) & mask);
    return field;
  }

  int version_;
  std::string start_;
  std::string body_;
};

inline platform::Bytes bytesFrom(std::string_view characters) {
  return {characters.begin(), characters.end()};
}

/// Returns the text, which must be ASCII, as UTF-16 with a little-endian mark.
inline std::string utf16(std::string_view ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char character : ascii) bytes += {character, '\0'};
  return bytes;
}

/// Returns bytes that are recognised as the start of an audio stream, but cannot be played.
inline std::string audio(std::size_t size = 4096) {
  std::string bytes = "\xFF\xFB\x90\x44";
  for (std::size_t i = bytes.size(); i < size; ++i) bytes += static_cast<char>(i * 31 % 251);
  return bytes;
}

}  // namespace tests
