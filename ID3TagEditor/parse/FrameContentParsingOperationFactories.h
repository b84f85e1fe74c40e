#pragma once

#include <map>
#include <memory>

#include "ID3TagEditor/model/FrameType.h"
#include "ID3TagEditor/parse/FrameContentParsingOperation.h"

// How the operations are put together, one factory for each way of reading a frame.
namespace ID3TagEditor {

using FrameContentParsingOperations = std::map<FrameType, std::unique_ptr<FrameContentParsingOperation>>;

struct ID3ParsingOperationForID3FrameWithStringFactory {
  static std::unique_ptr<FrameContentParsingOperation> make(FrameName frameName);
};

struct ID3ParsingOperationForID3FrameWithIntegerFactory {
  static std::unique_ptr<FrameContentParsingOperation> make(FrameName frameName);
};

struct ID3DiscPositionFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make();
};

struct ID3TrackPositionFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make();
};

struct ID3RecordingDayMonthFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make();
};

struct ID3RecordingHourMinuteFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make();
};

struct ID3GenreFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make();
};

struct ID3RecordingTimeFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make();
};

struct ID3AttachedPictureFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make();
};

struct ID3LocalizedFrameContentParsingOperationFactory {
  static std::unique_ptr<FrameContentParsingOperation> make(FrameName (*frameName)(ID3FrameContentLanguage));
};

/// The operation for each kind of frame, `invalid` excepted.
struct ID3FrameContentParsingOperationFactory {
  static FrameContentParsingOperations make();
};

}  // namespace ID3TagEditor
