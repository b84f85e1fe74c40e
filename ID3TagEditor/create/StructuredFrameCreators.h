#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ID3TagEditor/create/FrameFromStringContentCreator.h"
#include "ID3TagEditor/create/ID3FrameCreator.h"
#include "ID3TagEditor/model/FrameKinds.h"
#include "ID3TagEditor/model/RecordingDateTime.h"

// The frames whose text is put together from several values.
namespace ID3TagEditor {

/// What the creators here share: the text of the tag's frame, written as one kind of frame.
class ID3StructuredFrameCreator : public ID3FrameCreator {
 public:
  ID3StructuredFrameCreator(const FrameKind& kind,
                            std::unique_ptr<FrameFromStringContentCreator> frameCreator)
      : kind_(kind), frameCreator_(std::move(frameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const final;

 private:
  /// Nothing when there is nothing to write under the name.
  virtual std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const = 0;

  FrameKind kind_;
  std::unique_ptr<FrameFromStringContentCreator> frameCreator_;
};

/// "(17)Rock", "(17)" or "Rock" (ID3v2.3.0 §4.2.1, "TCON").
class ID3GenreFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};

/// "5/12" or "5" (ID3v2.3.0 §4.2.1, "TRCK", "TPOS").
class ID3PartOfTotalFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};
using ID3TrackPositionFrameCreator = ID3PartOfTotalFrameCreator;
using ID3DiscPositionFrameCreator = ID3PartOfTotalFrameCreator;

/// "0303" for 3 March (ID3v2.3.0 §4.2.1, "TDAT").
class ID3RecordingDayMonthFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};

/// "0905" for five past nine (ID3v2.3.0 §4.2.1, "TIME").
class ID3RecordingHourMinuteFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};

class TimestampCreator {
 public:
  virtual ~TimestampCreator() = default;
  virtual std::optional<std::string> createFrom(const RecordingDateTime& recordingDateTime) const = 0;
};

/// The whole seconds from 1970-01-01 00:00 GMT to the moment, in decimal; nothing unless the moment is known
/// to the minute and lies in the calendar.
class ID3TimestampCreator : public TimestampCreator {
 public:
  std::optional<std::string> createFrom(const RecordingDateTime& recordingDateTime) const override;
};

/// A timestamp or, when the moment is not known to the minute, the year (ID3v2.4.0 frames §4.2.5, "TDRC").
class ID3RecordingDateTimeFrameCreator : public ID3StructuredFrameCreator {
 public:
  ID3RecordingDateTimeFrameCreator(const FrameKind& kind,
                                   std::unique_ptr<FrameFromStringContentCreator> frameCreator,
                                   std::unique_ptr<TimestampCreator> timestampCreator)
      : ID3StructuredFrameCreator(kind, std::move(frameCreator)),
        timestampCreator_(std::move(timestampCreator)) {}

 private:
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;

  std::unique_ptr<TimestampCreator> timestampCreator_;
};

}  // namespace ID3TagEditor
