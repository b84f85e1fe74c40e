#pragma once

#include <map>
#include <memory>

#include "ID3TagEditor/model/FrameKinds.h"
#include "ID3TagEditor/parse/FrameContentParsingOperations.h"

// Factories of the operations that parse frames.
namespace ID3TagEditor {

using FrameContentParsingOperationPointer = std::unique_ptr<FrameContentParsingOperation>;
using FrameContentParsingOperations = std::map<FrameType, FrameContentParsingOperationPointer>;

/// Makes an operation for text frames. `createFrameOperation` turns a text into a frame object.
struct ID3FrameStringContentParsingOperationFactory {
  static FrameContentParsingOperationPointer make(
      ID3FrameStringContentParsingOperation::CreateFrame createFrameOperation);
};

struct ID3ParsingOperationForID3FrameWithStringFactory {
  static FrameContentParsingOperationPointer make(FrameName frameName);
};

struct ID3ParsingOperationForID3FrameWithIntegerFactory {
  static FrameContentParsingOperationPointer make(FrameName frameName);
};

struct ID3LocalizedFrameContentParsingOperationFactory {
  /// Makes an operation for lyrics or comments. `kind` must be `lyricsKind` or `commentKind`.
  static FrameContentParsingOperationPointer make(FrameName::Kind kind);
};

/// Makes the operation that parses frames of the kind.
struct FrameKindParsingOperationFactory {
  static FrameContentParsingOperationPointer make(const FrameKind& kind);
};

template <FrameType type>
struct ParsingOperationFactoryFor {
  static FrameContentParsingOperationPointer make() {
    return FrameKindParsingOperationFactory::make(kindOf(type));
  }
};
using ID3DiscPositionFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::discPosition>;
using ID3TrackPositionFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::trackPosition>;
using ID3RecordingDayMonthFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::recordingDayMonth>;
using ID3RecordingHourMinuteFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::recordingHourMinute>;
using ID3GenreFrameContentParsingOperationFactory = ParsingOperationFactoryFor<FrameType::genre>;
using ID3RecordingTimeFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::recordingDateTime>;
using ID3AttachedPictureFrameContentParsingOperationFactory =
    ParsingOperationFactoryFor<FrameType::attachedPicture>;

/// Makes the operations for all kinds of frame.
struct ID3FrameContentParsingOperationFactory {
  static FrameContentParsingOperations make();
};

}  // namespace ID3TagEditor
