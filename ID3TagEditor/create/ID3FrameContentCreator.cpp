#include "ID3TagEditor/create/ID3FrameContentCreator.h"

#include <string>

#include "ID3TagEditor/model/ID3Frames.h"

namespace ID3TagEditor {

void FrameFromStringContentAdapter::createFrames(const ID3Tag& id3Tag, FrameName frameName,
                                                 FrameType frameType, platform::Bytes& output) const {
  if (const auto* frame = id3Tag.frame<ID3FrameWithStringContent>(frameName)) {
    frameCreator_->createFrame(frameType, id3Tag.properties.version, frame->content(), output);
  }
}

void FrameFromIntegerContentAdapter::createFrames(const ID3Tag& id3Tag, FrameName frameName,
                                                  FrameType frameType, platform::Bytes& output) const {
  const auto* frame = id3Tag.frame<ID3FrameWithIntegerContent>(frameName);
  if (frame != nullptr && frame->value()) {
    frameCreator_->createFrame(frameType, id3Tag.properties.version, std::to_string(*frame->value()), output);
  }
}

void ID3FrameContentCreator::createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const {
  frameContentAdapter_->createFrames(id3Tag, frameName_, frameType_, output);
}

}  // namespace ID3TagEditor
