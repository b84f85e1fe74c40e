#pragma once

#include <memory>

#include "ID3TagEditor/create/FrameHeaderCreation.h"
#include "ID3TagEditor/create/ID3FrameCreator.h"
#include "ID3TagEditor/model/ID3AttachedPictureFrameConfiguration.h"
#include "ID3TagEditor/model/ID3Frames.h"

namespace ID3TagEditor {

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

}  // namespace ID3TagEditor
