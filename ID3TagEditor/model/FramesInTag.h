#pragma once

#include <vector>

#include "ID3TagEditor/model/ID3Frames.h"
#include "ID3TagEditor/model/ID3Tag.h"

// The frames that a tag can hold several of.
namespace ID3TagEditor {

/// In the order of the picture types.
inline std::vector<const ID3FrameAttachedPicture*> picturesIn(const ID3Tag& tag) {
  return tag.framesBetween<ID3FrameAttachedPicture>(FrameName::attachedPicture(allPictureTypes.front()),
                                                    FrameName::attachedPicture(allPictureTypes.back()));
}

/// The lyrics or the comments, as `kind` tells, in the order of the languages.
inline std::vector<const ID3FrameWithLocalizedContent*> localizedFramesIn(const ID3Tag& tag,
                                                                          FrameName::Kind kind) {
  return tag.framesBetween<ID3FrameWithLocalizedContent>(FrameName::localized(kind, allLanguages.front()),
                                                         FrameName::localized(kind, allLanguages.back()));
}

}  // namespace ID3TagEditor
