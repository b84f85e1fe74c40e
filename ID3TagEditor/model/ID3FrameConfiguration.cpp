#include "ID3TagEditor/model/ID3FrameConfiguration.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace ID3TagEditor {

namespace {

struct IdentifierEntry {
  std::string_view identifier;
  FrameType type = FrameType::invalid;
};

/// One version's identifiers in ascending order; kinds without an identifier come first, as empty texts.
using IdentifierIndex = std::array<IdentifierEntry, frameTypeTable.size()>;

constexpr std::array<IdentifierIndex, allVersions.size()> indices = [] {
  std::array<IdentifierIndex, allVersions.size()> all{};
  for (std::size_t column = 0; column < all.size(); ++column) {
    for (std::size_t row = 0; row < frameTypeTable.size(); ++row) {
      all[column][row] = {frameTypeTable[row].identifiers[column], frameTypeTable[row].type};
    }
    std::ranges::sort(all[column], {}, &IdentifierEntry::identifier);
  }
  return all;
}();

}  // namespace

std::string_view ID3FrameConfiguration::identifierFor(FrameType frameType, ID3Version version) const {
  const auto identifier = frameTypeTable[static_cast<std::size_t>(frameType)].identifiers[columnOf(version)];
  if (identifier.empty()) std::abort();
  return identifier;
}

FrameType ID3FrameConfiguration::frameTypeFor(std::string_view identifier, ID3Version version) const {
  if (identifier.empty()) return FrameType::invalid;
  const IdentifierIndex& index = indices[columnOf(version)];
  const auto found = std::ranges::lower_bound(index, identifier, {}, &IdentifierEntry::identifier);
  return found != index.end() && found->identifier == identifier ? found->type : FrameType::invalid;
}

std::uint8_t ID3FrameConfiguration::encodingByteFor(ID3Version version, ID3StringEncoding encoding) const {
  if (encoding == ID3StringEncoding::UTF8 && version != ID3Version::version4) std::abort();
  return rawValue(encoding);
}

}  // namespace ID3TagEditor
