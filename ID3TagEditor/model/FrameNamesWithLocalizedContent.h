#pragma once

#include <array>

#include "ID3TagEditor/model/FrameName.h"
#include "ID3TagEditor/model/FrameType.h"

namespace ID3TagEditor {

/// A kind of frame that a tag holds once for each language, and how its names are made.
struct LocalizedFrameNames {
  FrameType type;
  FrameName (*nameFor)(ID3FrameContentLanguage language);
};

/// The kinds that exist for each language in `allLanguages`, in the order in which they are written.
inline constexpr std::array<LocalizedFrameNames, 2> FrameNamesWithLocalizedContent{
    {{FrameType::unsyncronisedLyrics, FrameName::unsynchronizedLyrics},
     {FrameType::comment, FrameName::comment}}};

}  // namespace ID3TagEditor
