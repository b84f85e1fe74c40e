#pragma once

#include <memory>
#include <vector>

#include "ID3TagEditor/create/ID3FrameCreator.h"

namespace ID3TagEditor {

using FrameCreators = std::vector<std::unique_ptr<ID3FrameCreator>>;

/// The creators of year, day and month, hour and minute, and the v2.4 recording time.
struct ID3RecordingTimesFrameCreatorsFactory {
  static FrameCreators make();
};

struct ID3iTunesFrameCreatorsFactory {
  static FrameCreators make();
};

/// The creators of all kinds; their order is the order of the frames in every tag that is written.
struct ID3FrameCreatorsFactory {
  static FrameCreators make();
};

}  // namespace ID3TagEditor
