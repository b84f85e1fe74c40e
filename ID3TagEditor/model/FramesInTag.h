#pragma once

#include <vector>

#include "ID3TagEditor/model/ID3Frames.h"
#include "ID3TagEditor/model/ID3Tag.h"

// Access to the frames of which a tag can have several.
namespace ID3TagEditor {

/// Returns the pictures in the order of the picture types.
inline std::vector<const ID3FrameAttachedPicture*> picturesIn(const ID3Tag& tag) {
  return tag.framesBetween<ID3FrameAttachedPicture>(FrameName::attachedPicture(allPictureTypes.front()),
                                                    FrameName::attachedPicture(allPictureTypes.back()));
}

/// Returns the lyrics or the comments in the order of the languages. `kind` must be `lyricsKind` or
/// `commentKind`.
inline std::vector<const ID3FrameWithLocalizedContent*> localizedFramesIn(const ID3Tag& tag,
                                                                          FrameName::Kind kind) {
  return tag.framesBetween<ID3FrameWithLocalizedContent>(FrameName::localized(kind, allLanguages.front()),
                                                         FrameName::localized(kind, allLanguages.back()));
}

}  // namespace ID3TagEditor
