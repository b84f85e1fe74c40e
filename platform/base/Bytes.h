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

/// Bytes that somebody owns.
using Bytes = std::vector<std::uint8_t>;

/// Bytes that are only looked at.
using ByteView = std::span<const std::uint8_t>;

/// The bytes of `text` as they are.
inline ByteView bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The bytes as a run of characters, not checked to be text of any encoding.
inline std::string_view charactersOf(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline void append(Bytes& bytes, ByteView more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

/// Whether all of the bytes are zero.
inline bool areZero(ByteView bytes) {
  if (bytes.empty()) return true;
  // Each byte against the next one, which the library does many at a time.
  const std::string_view characters = charactersOf(bytes);
  return bytes.front() == 0 && characters.substr(1) == characters.substr(0, characters.size() - 1);
}

/// The number that up to four bytes make, the most significant first.
constexpr std::uint32_t bigEndian(ByteView bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

/// The four bytes of a number, the most significant first.
constexpr std::array<std::uint8_t, 4> bigEndianBytes(std::uint32_t value) {
  return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
          static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

/// Immutable bytes that all copies and slices share, so that a picture passes through the program without
/// being copied. A slice keeps the whole buffer that it was cut from alive.
class SharedBytes {
 public:
  SharedBytes() = default;
  SharedBytes(Bytes bytes) : owner_(std::make_shared<const Bytes>(std::move(bytes))), view_(*owner_) {}

  /// `count` bytes from `offset` on; both must lie inside these bytes.
  SharedBytes slice(std::size_t offset, std::size_t count) const {
    SharedBytes part;
    part.owner_ = owner_;
    part.view_ = view_.subspan(offset, count);
    return part;
  }

  /// The same bytes without much else kept alive: in a buffer of their own where the one that they were cut
  /// from is clearly larger.
  SharedBytes compacted() const {
    const bool isLarge = owner_ && owner_->size() - view_.size() > view_.size() / 8;
    return isLarge ? SharedBytes(Bytes(view_.begin(), view_.end())) : *this;
  }

  /// Returns whether these are the same place in the same buffer.
  bool isSameAs(const SharedBytes& other) const {
    return view_.data() == other.view_.data() && size() == other.size();
  }
  /// Returns whether other objects share the buffer at this moment.
  bool isShared() const { return owner_.use_count() > 1; }

  std::size_t size() const { return view_.size(); }
  bool empty() const { return view_.empty(); }
  operator ByteView() const { return view_; }
  ByteView view() const { return view_; }

  /// The same bytes, whoever holds them.
  friend bool operator==(const SharedBytes& a, const SharedBytes& b) {
    const auto both = [](ByteView view) { return charactersOf(view); };
    return a.size() == b.size() && (a.view_.data() == b.view_.data() || both(a) == both(b));
  }

 private:
  std::shared_ptr<const Bytes> owner_;
  ByteView view_;
};

}  // namespace platform
