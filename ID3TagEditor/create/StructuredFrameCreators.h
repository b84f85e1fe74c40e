#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ID3TagEditor/create/FrameFromStringContentCreator.h"
#include "ID3TagEditor/create/ID3FrameCreator.h"
#include "ID3TagEditor/model/FrameKinds.h"
#include "ID3TagEditor/model/RecordingDateTime.h"

// Creators of frames whose text combines several values.
namespace ID3TagEditor {

/// Writes the text that the derived class makes of the tag's frame, as a frame of one kind.
class ID3StructuredFrameCreator : public ID3FrameCreator {
 public:
  ID3StructuredFrameCreator(const FrameKind& kind,
                            std::unique_ptr<FrameFromStringContentCreator> frameCreator)
      : kind_(kind), frameCreator_(std::move(frameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const final;

 private:
  /// Returns nothing if the tag has no frame of that name, or one that cannot be written.
  virtual std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const = 0;

  FrameKind kind_;
  std::unique_ptr<FrameFromStringContentCreator> frameCreator_;
};

/// Writes "(17)Rock", "(17)" or "Rock" (ID3v2.3.0 §4.2.1, "TCON").
class ID3GenreFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};

/// Writes "5/12" or "5" (ID3v2.3.0 §4.2.1, "TRCK", "TPOS").
class ID3PartOfTotalFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};
using ID3TrackPositionFrameCreator = ID3PartOfTotalFrameCreator;
using ID3DiscPositionFrameCreator = ID3PartOfTotalFrameCreator;

/// Writes "0303" for 3 March (ID3v2.3.0 §4.2.1, "TDAT").
class ID3RecordingDayMonthFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};

/// Writes "0905" for five past nine (ID3v2.3.0 §4.2.1, "TIME").
class ID3RecordingHourMinuteFrameCreator : public ID3StructuredFrameCreator {
  using ID3StructuredFrameCreator::ID3StructuredFrameCreator;
  std::optional<std::string> textIn(const ID3Tag& id3Tag, FrameName name) const override;
};

class TimestampCreator {
 public:
  virtual ~TimestampCreator() = default;
  virtual std::optional<std::string> createFrom(const RecordingDateTime& recordingDateTime) const = 0;
};

/// Returns the number of seconds from 1970-01-01 00:00 UTC to the given moment, in decimal. Returns nothing
/// if a part of the moment, down to the minute, is absent, or if it lies outside the calendar.
class ID3TimestampCreator : public TimestampCreator {
 public:
  std::optional<std::string> createFrom(const RecordingDateTime& recordingDateTime) const override;
};

/// Writes a timestamp, or the year if no timestamp can be made (ID3v2.4.0 frames §4.2.5, "TDRC").
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
