#include "ID3TagEditor/create/ID3AttachedPicturesFramesCreator.h"

#include "ID3TagEditor/model/FramesInTag.h"

namespace ID3TagEditor {

void ID3AttachedPictureFrameCreator::createFrame(const ID3FrameAttachedPicture& picture, const ID3Tag& id3Tag,
                                                 platform::Bytes& output) const {
  const ID3Version version = id3Tag.properties.version;
  const auto prefix = id3AttachedPictureFrameConfiguration_.getHeaderMimeTypeFor(picture.format(), version);
  frameHeaderCreator_->createUsing(version, FrameType::attachedPicture,
                                   prefix.size() + picture.picture().size(), output);
  const std::size_t body = output.size();
  platform::append(output, prefix);
  output[body + id3AttachedPictureFrameConfiguration_.getPictureTypeBytePositionFor(
                    picture.format(), version)] = rawValue(picture.type());
  platform::append(output, picture.picture());
}

void ID3AttachedPicturesFramesCreator::createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const {
  for (const auto* frame : picturesIn(id3Tag))
    attachedPictureFrameCreator_->createFrame(*frame, id3Tag, output);
}

std::unique_ptr<ID3FrameCreator> ID3AttachedPicturesFramesCreatorFactory::make() {
  return std::make_unique<ID3AttachedPicturesFramesCreator>(
      std::make_unique<ID3AttachedPictureFrameCreator>(ID3FrameHeaderCreatorFactory::make()));
}

}  // namespace ID3TagEditor
