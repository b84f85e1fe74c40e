#pragma once

#include <memory>
#include <vector>

#include "ID3TagEditor/create/FrameHeaders.h"
#include "ID3TagEditor/create/TextFrames.h"
#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3TagEditor/model/FrameTables.h"
#include "ID3TagEditor/model/ID3Tag.h"

// The creators of frames, one for each kind, and the factories of their list.
namespace ID3TagEditor {

/// Serialises the frames of one kind.
class ID3FrameCreator {
 public:
  virtual ~ID3FrameCreator() = default;
  /// Appends the tag's frames of this kind to `output`: none, one or several whole frames. Skips frames of
  /// the wrong class and frames that lack a value that has to be written.
  virtual void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const = 0;
};

/// Writes the text frame of one name.
class ID3FrameContentCreator : public ID3FrameCreator {
 public:
  ID3FrameContentCreator(std::unique_ptr<FrameContentAdapter> frameContentAdapter, FrameName frameName,
                         FrameType frameType)
      : frameContentAdapter_(std::move(frameContentAdapter)), frameName_(frameName), frameType_(frameType) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override {
    frameContentAdapter_->createFrames(id3Tag, frameName_, frameType_, output);
  }

 private:
  std::unique_ptr<FrameContentAdapter> frameContentAdapter_;
  FrameName frameName_;
  FrameType frameType_;
};

/// Writes the text frame of one kind, whose objects are of class `Frame`, in the encoding of the kind.
template <class Frame>
class TextFrameCreator : public ID3FrameContentCreator {
 public:
  explicit TextFrameCreator(const FrameKind& kind)
      : ID3FrameContentCreator(std::make_unique<FrameFromContentAdapter<Frame>>(
                                   kind.encoding == ID3StringEncoding::UTF16
                                       ? ID3FrameFromStringContentCreatorWithUTF16EncodingFactory::make()
                                       : ID3FrameFromStringContentCreatorWithISO88591EncodingFactory::make()),
                               kind.name, kind.type) {}
};
using ID3GenreFrameCreator = TextFrameCreator<ID3FrameGenre>;
using ID3TrackPositionFrameCreator = TextFrameCreator<ID3FramePartOfTotal>;
using ID3DiscPositionFrameCreator = TextFrameCreator<ID3FramePartOfTotal>;
using ID3RecordingDayMonthFrameCreator = TextFrameCreator<ID3FrameRecordingDayMonth>;
using ID3RecordingHourMinuteFrameCreator = TextFrameCreator<ID3FrameRecordingHourMinute>;
using ID3RecordingDateTimeFrameCreator = TextFrameCreator<ID3FrameRecordingDateTime>;

/// Writes one picture frame with the picture type of the frame object and an empty description (ID3v2.2.0
/// §4.15, ID3v2.3.0 §4.15).
class ID3AttachedPictureFrameCreator {
 public:
  /// Appends one picture frame of the version of `id3Tag`.
  void createFrame(const ID3FrameAttachedPicture& picture, const ID3Tag& id3Tag,
                   platform::Bytes& output) const;

 private:
  ID3AttachedPictureFrameConfiguration id3AttachedPictureFrameConfiguration_;
  FrameHeaderCreator frameHeaderCreator_ = ID3FrameHeaderCreatorFactory::make();
};
using AttachedPictureFrameCreator = ID3AttachedPictureFrameCreator;

/// Writes the pictures of all types, in the order of the types.
class ID3AttachedPicturesFramesCreator : public ID3FrameCreator {
 public:
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override;

 private:
  AttachedPictureFrameCreator attachedPictureFrameCreator_;
};

/// Writes one comment or lyrics frame in UTF-16, without a terminator after the content (ID3v2.3.0 §4.9,
/// §4.11). An unknown language is written as "XXX", the code that ID3v2.4.0 structure §4 reserves for it.
class ID3LocalizedFrameCreator {
 public:
  void createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType, ID3Version version,
                   platform::Bytes& output) const;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  FrameHeaderCreator frameHeaderCreator_ = ID3FrameHeaderCreatorFactory::make();
  PaddingAdder paddingAdder_;
};
using LocalizedFrameCreator = ID3LocalizedFrameCreator;

/// Writes the lyrics, or the comments, of all languages.
class ID3FramesWithLocalizedContentCreator : public ID3FrameCreator {
 public:
  explicit ID3FramesWithLocalizedContentCreator(const FrameKind& kind) : kind_(kind) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override;

 private:
  FrameKind kind_;
  LocalizedFrameCreator localizedFrameCreator_;
};

template <class Creator, class... Arguments>
struct FrameCreatorFactory {
  static std::unique_ptr<ID3FrameCreator> make(const Arguments&... arguments) {
    return std::make_unique<Creator>(arguments...);
  }
};
using ID3AttachedPicturesFramesCreatorFactory = FrameCreatorFactory<ID3AttachedPicturesFramesCreator>;
using ID3FramesWithLocalizedContentCreatorFactory =
    FrameCreatorFactory<ID3FramesWithLocalizedContentCreator, FrameKind>;

using FrameCreators = std::vector<std::unique_ptr<ID3FrameCreator>>;

/// Makes the creators for all kinds of frame. Their order is the order of the frames in every tag that is
/// written.
struct ID3FrameCreatorsFactory {
  static FrameCreators make();
};

/// Makes the creators for the year, day and month, hour and minute, and the recording time of v2.4.
struct ID3RecordingTimesFrameCreatorsFactory {
  static FrameCreators make();
};

struct ID3iTunesFrameCreatorsFactory {
  static FrameCreators make();
};

}  // namespace ID3TagEditor
