#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ID3TagEditor/create/FrameHeaders.h"
#include "ID3TagEditor/create/TextFrames.h"
#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/FrameTables.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/model/Values.h"

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

class LocalizedFrameCreator {
 public:
  virtual ~LocalizedFrameCreator() = default;
  virtual void createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType, ID3Version version,
                           platform::Bytes& output) const = 0;
};

/// Writes one comment or lyrics frame in UTF-16, without a terminator after the content (ID3v2.3.0 §4.9,
/// §4.11). An unknown language is written as "XXX", the code that ID3v2.4.0 structure §4 reserves for it.
class ID3LocalizedFrameCreator : public LocalizedFrameCreator {
 public:
  ID3LocalizedFrameCreator(std::unique_ptr<FrameHeaderCreator> frameHeaderCreator,
                           std::unique_ptr<PaddingAdder> paddingAdder)
      : frameHeaderCreator_(std::move(frameHeaderCreator)), paddingAdder_(std::move(paddingAdder)) {}
  void createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType, ID3Version version,
                   platform::Bytes& output) const override;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  std::unique_ptr<FrameHeaderCreator> frameHeaderCreator_;
  std::unique_ptr<PaddingAdder> paddingAdder_;
};

/// Writes the lyrics, or the comments, of all languages.
class ID3FramesWithLocalizedContentCreator : public ID3FrameCreator {
 public:
  ID3FramesWithLocalizedContentCreator(const FrameKind& kind,
                                       std::unique_ptr<LocalizedFrameCreator> localizedFrameCreator)
      : kind_(kind), localizedFrameCreator_(std::move(localizedFrameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override;

 private:
  FrameKind kind_;
  std::unique_ptr<LocalizedFrameCreator> localizedFrameCreator_;
};

struct ID3FramesWithLocalizedContentCreatorFactory {
  static std::unique_ptr<ID3FrameCreator> make(const FrameKind& kind);
};

class AttachedPictureFrameCreator {
 public:
  virtual ~AttachedPictureFrameCreator() = default;
  /// Appends one picture frame of the version of `id3Tag`.
  virtual void createFrame(const ID3FrameAttachedPicture& picture, const ID3Tag& id3Tag,
                           platform::Bytes& output) const = 0;
};

/// Writes the picture type of the frame object and an empty description (ID3v2.2.0 §4.15, ID3v2.3.0 §4.15).
class ID3AttachedPictureFrameCreator : public AttachedPictureFrameCreator {
 public:
  explicit ID3AttachedPictureFrameCreator(std::unique_ptr<FrameHeaderCreator> frameHeaderCreator)
      : frameHeaderCreator_(std::move(frameHeaderCreator)) {}
  void createFrame(const ID3FrameAttachedPicture& picture, const ID3Tag& id3Tag,
                   platform::Bytes& output) const override;

 private:
  ID3AttachedPictureFrameConfiguration id3AttachedPictureFrameConfiguration_;
  std::unique_ptr<FrameHeaderCreator> frameHeaderCreator_;
};

/// Writes the pictures of all types, in the order of the types.
class ID3AttachedPicturesFramesCreator : public ID3FrameCreator {
 public:
  explicit ID3AttachedPicturesFramesCreator(
      std::unique_ptr<AttachedPictureFrameCreator> attachedPictureFrameCreator)
      : attachedPictureFrameCreator_(std::move(attachedPictureFrameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override;

 private:
  std::unique_ptr<AttachedPictureFrameCreator> attachedPictureFrameCreator_;
};

struct ID3AttachedPicturesFramesCreatorFactory {
  static std::unique_ptr<ID3FrameCreator> make();
};

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
