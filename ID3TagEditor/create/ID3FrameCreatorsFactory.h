#pragma once

#include <memory>
#include <vector>

#include "ID3TagEditor/create/ID3FrameCreator.h"

namespace ID3TagEditor {

using FrameCreators = std::vector<std::unique_ptr<ID3FrameCreator>>;

/// Makes the creators for the year, day and month, hour and minute, and the recording time of v2.4.
struct ID3RecordingTimesFrameCreatorsFactory {
  static FrameCreators make();
};

struct ID3iTunesFrameCreatorsFactory {
  static FrameCreators make();
};

/// Makes the creators for all kinds of frame. Their order is the order of the frames in every tag that is
/// written.
struct ID3FrameCreatorsFactory {
  static FrameCreators make();
};

}  // namespace ID3TagEditor
