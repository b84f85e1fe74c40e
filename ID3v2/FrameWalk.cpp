#include "ID3v2/FrameWalk.h"

#include <algorithm>
#include <array>
#include <optional>

#include "ID3v2/Reading.h"
#include "platform/base/Formats.h"

namespace ID3v2 {

std::optional<TagHeader> tagHeader(platform::ByteView bytes) {
  if (bytes.size() < tagHeaderSize || !platform::charactersOf(bytes).starts_with("ID3")) return std::nullopt;
  TagHeader header{.version = bytes[3]};
  if (header.version < 2 || header.version > 4) return std::nullopt;
  const std::uint8_t flags = bytes[5];
  header.isUnsynchronised = (flags & 0x80) != 0;
  header.hasExtendedHeader = header.version > 2 && (flags & 0x40) != 0;
  header.hasFooter = header.version == 4 && (flags & 0x10) != 0;
  header.isExperimental = header.version > 2 && (flags & experimentalFlag) != 0;
  header.bodySize = platform::numberFromSynchsafe(platform::bigEndian(bytes.subspan(6, 4)));
  return header;
}

std::optional<std::uint64_t> tagLength(platform::ByteView header) {
  const auto parsed = tagHeader(header);
  if (!parsed) return std::nullopt;
  return parsed->length();
}

std::size_t extendedHeaderLength(platform::ByteView body, std::uint8_t version) {
  constexpr std::size_t sizeField = 4;
  if (body.size() < sizeField || isFrameLikelyAt(body, 0, version)) return 0;
  const platform::ByteView field = body.first(sizeField);
  const std::size_t stated =
      version == 4 ? platform::numberFromSynchsafe(platform::bigEndian(field)) : platform::bigEndian(field);
  const std::size_t usual = version == 4 ? stated : stated + sizeField;
  const std::size_t unusual = version == 4 ? stated + sizeField : stated;
  for (const std::size_t length : {usual, unusual}) {
    if (length > sizeField && leadsOn(body, length, version)) return length;
  }
  return 0;
}

namespace {

using platform::ByteView;

/// The lengths of the parts of a frame's header, in bytes.
struct Layout {
  std::size_t identifier;
  std::size_t size;
  std::size_t header;
};

Layout layoutOf(std::uint8_t version) {
  return version == 2 ? Layout{3, 3, 6} : Layout{4, 4, 10};
}

bool isCapitalOrDigit(std::uint8_t character) {
  return (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9');
}

/// Returns whether the standards allow the identifier, or whether it is a v2.2 identifier that a program has
/// extended to four characters.
bool isIdentifier(ByteView identifier) {
  return std::ranges::all_of(identifier.first(3), isCapitalOrDigit) &&
         (identifier.size() == 3 || isCapitalOrDigit(identifier[3]) || identifier[3] == 0);
}

/// Returns whether the identifier is one that no standard allows, but that programs write.
bool isOddIdentifier(ByteView identifier) {
  return identifier.size() == 4 &&
         std::ranges::all_of(identifier, [](std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F; });
}

/// One interpretation of a size field, plain or synchsafe. Below 128, both are the same.
struct Size {
  std::size_t value;
  /// Whether this is the interpretation of the tag's version.
  bool isOwn;
};

/// Returns the possible sizes of the frame at `at`, that of the version first. A size that does not fit into
/// the body is absent.
std::array<std::optional<Size>, 2> sizesAt(ByteView body, std::size_t at, std::uint8_t version) {
  const Layout layout = layoutOf(version);
  const std::size_t room = body.size() - at - layout.header;
  const ByteView field = body.subspan(at + layout.identifier, layout.size);
  const std::uint32_t number = platform::bigEndian(field);
  const std::uint32_t spread = platform::numberFromSynchsafe(number);
  const bool isSynchsafe = version > 2 && (number & 0x80808080U) == 0;
  std::optional<Size> plain;
  std::optional<Size> safe;
  const bool isEither = isSynchsafe && spread == number;
  if (number <= room) plain = {.value = number, .isOwn = version != 4 || isEither};
  if (isSynchsafe && spread <= room) safe = {.value = spread, .isOwn = version == 4 || isEither};
  return version == 4 ? std::array{safe, plain} : std::array{plain, safe};
}

bool hasHeaderAt(ByteView body, std::size_t at, std::uint8_t version) {
  return at <= body.size() && body.size() - at >= layoutOf(version).header;
}

/// Returns whether the frame that ends at `end` seems to contain padding: its last four bytes and everything
/// after it are zero. A text in UTF-16 can end in three zero bytes, but not in four.
bool hasSwallowedPadding(ByteView body, std::size_t end) {
  return end < body.size() && platform::areZero(body.first(end).last(4)) &&
         platform::areZero(body.subspan(end));
}

}  // namespace

bool isFrameLikelyAt(ByteView body, std::size_t at, std::uint8_t version) {
  if (!hasHeaderAt(body, at, version)) return false;
  const ByteView identifier = body.subspan(at, layoutOf(version).identifier);
  return (isIdentifier(identifier) || isOddIdentifier(identifier)) &&
         std::ranges::any_of(sizesAt(body, at, version), [](const auto& size) { return size.has_value(); });
}

bool leadsOn(ByteView body, std::size_t at, std::uint8_t version) {
  return at <= body.size() && (isFrameLikelyAt(body, at, version) || platform::areZero(body.subspan(at)));
}

namespace {

/// How a walk reads sizes: all as the version requires, all in the other way, or each in the way that leads
/// to another frame or to padding.
enum class Sizes { own, other, mixed };

/// Returns the size of the frame at `at`, or nothing if the walk ends there.
std::optional<Size> sizeAt(Sizes sizes, ByteView body, std::size_t at, std::uint8_t version) {
  const Layout layout = layoutOf(version);
  const ByteView identifier = body.subspan(at, layout.identifier);
  if (!isIdentifier(identifier) && !isOddIdentifier(identifier)) return std::nullopt;
  const auto readings = sizesAt(body, at, version);
  const std::optional<Size>& own = readings[0];
  const std::optional<Size>& other = readings[1];
  const auto leads = [&](const std::optional<Size>& size) {
    if (!size) return false;
    const std::size_t end = at + layout.header + size->value;
    // In a damaged tag, the other size may end somewhere in the padding by chance.
    const bool isOwn = own && size->value == own->value;
    return leadsOn(body, end, version) && (isOwn || !hasSwallowedPadding(body, end));
  };
  if (sizes != Sizes::other && leads(own)) return own;
  if (sizes != Sizes::own && leads(other)) return other;
  // A frame that leads nowhere can still be the last one before damage.
  if (!isIdentifier(identifier) || sizes == Sizes::other) return std::nullopt;
  return sizes == Sizes::mixed && !own ? other : own;
}

FrameWalk walkFramesBy(Sizes sizes, const platform::SharedBytes& body, std::size_t start,
                       std::uint8_t version, std::size_t limit) {
  const Layout layout = layoutOf(version);
  FrameWalk walk{.frames = {}, .end = start};
  const ByteView bytes = body;
  constexpr std::size_t usualCount = 16;
  walk.frames.reserve(usualCount);
  while (walk.frames.size() < limit && hasHeaderAt(bytes, walk.end, version)) {
    const std::size_t at = walk.end;
    const auto size = sizeAt(sizes, bytes, at, version);
    if (!size) break;
    walk.end = at + layout.header + size->value;
    RawFrame& frame = walk.frames.emplace_back();
    frame.identifier = platform::charactersOf(bytes.subspan(at, layout.identifier));
    if (version > 2) frame.flags = static_cast<std::uint16_t>(platform::bigEndian(bytes.subspan(at + 8, 2)));
    frame.whole = body.slice(at, layout.header + size->value);
    frame.content = frame.whole.slice(layout.header, size->value);
    frame.hasOwnSize = size->isOwn;
  }
  walk.isComplete = platform::areZero(bytes.subspan(walk.end));
  walk.mayHoldPadding = !walk.frames.empty() && hasSwallowedPadding(bytes, walk.end);
  return walk;
}

}  // namespace

FrameWalk walkFrames(const platform::SharedBytes& body, std::size_t start, std::uint8_t version,
                     std::size_t limit) {
  FrameWalk own = walkFramesBy(Sizes::own, body, start, version, limit);
  if (own.isSound()) return own;
  // A wrong size skips frames, and may end at the end of the tag by chance.
  const auto isSounder = [&](const FrameWalk& walk) {
    return own.isComplete ? walk.isSound() && walk.frames.size() > own.frames.size()
                          : walk.isComplete && walk.frames.size() >= own.frames.size();
  };
  FrameWalk other = walkFramesBy(Sizes::other, body, start, version, limit);
  if (isSounder(other)) return other;
  FrameWalk mixed = walkFramesBy(Sizes::mixed, body, start, version, limit);
  const bool leadsFurther = !own.isComplete && mixed.frames.size() > own.frames.size();
  return leadsFurther || isSounder(mixed) ? mixed : own;
}

}  // namespace ID3v2
