#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// Bytes with an owner.
using Bytes = std::vector<std::uint8_t>;

/// Bytes that belong to another object.
using ByteView = std::span<const std::uint8_t>;

/// Returns the bytes of `text` without converting them.
inline ByteView bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// Returns the bytes as characters, without checking that they are text of any encoding.
inline std::string_view charactersOf(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline void append(Bytes& bytes, ByteView more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

/// Returns whether all of the bytes are zero.
inline bool areZero(ByteView bytes) {
  if (bytes.empty()) return true;
  // Compare each byte with the next one, because the library compares many at a time.
  const std::string_view characters = charactersOf(bytes);
  return bytes.front() == 0 && characters.substr(1) == characters.substr(0, characters.size() - 1);
}

/// Returns the number that up to four bytes make, the most significant first.
constexpr std::uint32_t bigEndian(ByteView bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

/// Returns the four bytes of a number, the most significant first.
constexpr std::array<std::uint8_t, 4> bigEndianBytes(std::uint32_t value) {
  return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
          static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

/// Immutable bytes that all copies and slices share, so that a picture passes through the program without
/// being copied. A slice keeps alive the whole buffer from which it was cut.
class SharedBytes {
 public:
  SharedBytes() = default;
  SharedBytes(Bytes bytes) : owner_(std::make_shared<const Bytes>(std::move(bytes))), view_(*owner_) {}

  /// Returns `count` bytes from `offset` on; both must lie inside these bytes.
  SharedBytes slice(std::size_t offset, std::size_t count) const {
    SharedBytes part;
    part.owner_ = owner_;
    part.view_ = view_.subspan(offset, count);
    return part;
  }

  /// Returns equal bytes that keep little else alive: in a buffer of their own if the one from which they
  /// were cut is clearly larger.
  SharedBytes compacted() const {
    const bool isLarge = owner_ && owner_->size() - view_.size() > view_.size() / 8;
    return isLarge ? SharedBytes(Bytes(view_.begin(), view_.end())) : *this;
  }

  /// Returns whether both are the same part of the same buffer.
  bool isSameAs(const SharedBytes& other) const {
    return view_.data() == other.view_.data() && size() == other.size();
  }
  /// Returns whether other objects share the buffer at this moment.
  bool isShared() const { return owner_.use_count() > 1; }

  std::size_t size() const { return view_.size(); }
  bool empty() const { return view_.empty(); }
  operator ByteView() const { return view_; }
  ByteView view() const { return view_; }

  /// Returns whether the bytes are equal, whatever buffers contain them.
  friend bool operator==(const SharedBytes& a, const SharedBytes& b) {
    const auto both = [](ByteView view) { return charactersOf(view); };
    return a.size() == b.size() && (a.view_.data() == b.view_.data() || both(a) == both(b));
  }

 private:
  std::shared_ptr<const Bytes> owner_;
  ByteView view_;
};

}  // namespace platform
