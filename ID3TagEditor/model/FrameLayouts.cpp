#include "ID3TagEditor/model/FrameLayouts.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "ID3TagEditor/model/FrameTables.h"

namespace ID3TagEditor {

namespace {

/// Returns an identifier of at most four characters as one number, 0 for an empty one. Numbers compare faster
/// than texts, and the walk looks up an identifier for every few bytes of padding.
constexpr std::uint32_t packed(std::string_view identifier) {
  std::uint32_t number = 0;
  for (const char character : identifier) number = number << 8 | static_cast<unsigned char>(character);
  return number;
}

struct IdentifierEntry {
  std::uint32_t identifier = 0;
  FrameType type = FrameType::invalid;
};

/// The identifiers of one version in ascending order. Kinds that the version lacks come first.
using IdentifierIndex = std::array<IdentifierEntry, frameKinds.size()>;

constexpr std::array<IdentifierIndex, allVersions.size()> indices = [] {
  std::array<IdentifierIndex, allVersions.size()> all{};
  for (const ID3Version version : allVersions) {
    IdentifierIndex& index = all[columnOf(version)];
    std::ranges::transform(frameKinds, index.begin(), [&](const FrameKind& kind) {
      return IdentifierEntry{packed(kind.identifierIn(version)), kind.type};
    });
    std::ranges::sort(index, {}, &IdentifierEntry::identifier);
  }
  return all;
}();

}  // namespace

std::string_view ID3FrameConfiguration::identifierFor(FrameType frameType, ID3Version version) const {
  if (frameType == FrameType::invalid) std::abort();
  const std::string_view identifier = kindOf(frameType).identifierIn(version);
  if (identifier.empty()) std::abort();
  return identifier;
}

FrameType ID3FrameConfiguration::frameTypeFor(std::string_view identifier, ID3Version version) const {
  const std::uint32_t number = packed(identifier);
  if (number == 0 || identifier.size() != identifierSizeFor(version)) return FrameType::invalid;
  const IdentifierIndex& index = indices[columnOf(version)];
  const auto* const found = std::ranges::lower_bound(index, number, {}, &IdentifierEntry::identifier);
  return found != index.end() && found->identifier == number ? found->type : FrameType::invalid;
}

std::uint8_t ID3FrameConfiguration::encodingByteFor(ID3Version version, ID3StringEncoding encoding) const {
  if (encoding == ID3StringEncoding::UTF8 && version != ID3Version::version4) std::abort();
  return rawValue(encoding);
}

}  // namespace ID3TagEditor
