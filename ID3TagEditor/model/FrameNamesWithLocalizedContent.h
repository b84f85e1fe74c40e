#pragma once

#include <algorithm>
#include <array>

#include "ID3TagEditor/model/FrameKinds.h"

namespace ID3TagEditor {

inline constexpr std::size_t localizedKindCount =
    static_cast<std::size_t>(std::ranges::count(frameKinds, FrameContent::localized, &FrameKind::content));

/// The kinds of which a tag can have one frame for each language in `allLanguages`, in the order in which
/// they are written.
inline constexpr std::array<FrameName::Kind, localizedKindCount> FrameNamesWithLocalizedContent = [] {
  std::array<FrameName::Kind, localizedKindCount> names{};
  std::size_t count = 0;
  for (const FrameKind& kind : frameKinds) {
    if (kind.content == FrameContent::localized) names[count++] = kind.name;
  }
  return names;
}();

}  // namespace ID3TagEditor
