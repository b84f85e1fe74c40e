#pragma once

#include <functional>
#include <memory>

#include "ID3TagEditor/model/FrameName.h"
#include "ID3TagEditor/model/ID3Frame.h"
#include "ID3TagEditor/model/ID3Version.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Receives a parsed frame and the name under which to store it.
using FrameReceiver = std::function<void(FrameName, std::unique_ptr<ID3Frame>)>;

/// Parses frames of one kind.
class FrameContentParsingOperation {
 public:
  virtual ~FrameContentParsingOperation() = default;
  /// Calls `completed` for each frame object that it makes of `frame`, a whole frame with its header. Does
  /// not call it if the frame cannot be read.
  virtual void parse(const platform::SharedBytes& frame, ID3Version version,
                     const FrameReceiver& completed) const = 0;
};

}  // namespace ID3TagEditor
