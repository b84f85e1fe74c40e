#pragma once

#include <functional>
#include <memory>

#include "ID3TagEditor/model/FrameName.h"
#include "ID3TagEditor/model/ID3Frame.h"
#include "ID3TagEditor/model/ID3Version.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Takes one parsed frame and the name to store it under.
using FrameReceiver = std::function<void(FrameName, std::unique_ptr<ID3Frame>)>;

/// Makes frames of a kind out of their bytes.
class FrameContentParsingOperation {
 public:
  virtual ~FrameContentParsingOperation() = default;
  /// `frame` is a whole frame, header included. A frame that cannot be read is dropped: `completed` is not
  /// called then.
  virtual void parse(const platform::SharedBytes& frame, ID3Version version,
                     const FrameReceiver& completed) const = 0;
};

}  // namespace ID3TagEditor
