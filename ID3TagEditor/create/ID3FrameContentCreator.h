#pragma once

#include <memory>

#include "ID3TagEditor/create/FrameFromStringContentCreator.h"
#include "ID3TagEditor/create/ID3FrameCreator.h"

namespace ID3TagEditor {

/// Turns the content of a frame object into a text frame.
class FrameContentAdapter {
 public:
  virtual ~FrameContentAdapter() = default;
  /// Appends the tag's frame `frameName` as a frame of type `frameType`. Appends nothing if the tag has no
  /// such frame or one of another class.
  virtual void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                            platform::Bytes& output) const = 0;
};

class FrameFromStringContentAdapter : public FrameContentAdapter {
 public:
  explicit FrameFromStringContentAdapter(std::unique_ptr<FrameFromStringContentCreator> frameCreator)
      : frameCreator_(std::move(frameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                    platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameFromStringContentCreator> frameCreator_;
};

/// Writes frames with a value; skips those without.
class FrameFromIntegerContentAdapter : public FrameContentAdapter {
 public:
  explicit FrameFromIntegerContentAdapter(std::unique_ptr<FrameFromStringContentCreator> frameCreator)
      : frameCreator_(std::move(frameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, FrameName frameName, FrameType frameType,
                    platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameFromStringContentCreator> frameCreator_;
};

/// Writes the frame of one name.
class ID3FrameContentCreator : public ID3FrameCreator {
 public:
  ID3FrameContentCreator(std::unique_ptr<FrameContentAdapter> frameContentAdapter, FrameName frameName,
                         FrameType frameType)
      : frameContentAdapter_(std::move(frameContentAdapter)), frameName_(frameName), frameType_(frameType) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameContentAdapter> frameContentAdapter_;
  FrameName frameName_;
  FrameType frameType_;
};

}  // namespace ID3TagEditor
