#include "ID3TagEditor/create/ID3FramesWithLocalizedContentCreator.h"

#include "ID3TagEditor/model/FramesInTag.h"

namespace ID3TagEditor {

using platform::Bytes;

namespace {

std::string_view codeOf(ID3FrameContentLanguage language) {
  return language == ID3FrameContentLanguage::unknown ? "XXX" : rawValue(language);
}

}  // namespace

void ID3LocalizedFrameCreator::createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType,
                                           ID3Version version, Bytes& output) const {
  Bytes body{id3FrameConfiguration_.encodingByteFor(version, ID3StringEncoding::UTF16)};
  platform::append(body, platform::bytesOf(codeOf(frame.language())));
  platform::append(body, utf16(frame.contentDescription()));
  paddingAdder_->addPaddingTo(body, 2);
  platform::append(body, utf16(frame.content()));
  frameHeaderCreator_->createUsing(version, frameType, body.size(), output);
  platform::append(output, body);
}

void ID3FramesWithLocalizedContentCreator::createFrames(const ID3Tag& id3Tag, Bytes& output) const {
  for (const auto* frame : localizedFramesIn(id3Tag, kind_.name)) {
    localizedFrameCreator_->createFrame(*frame, kind_.type, id3Tag.properties.version, output);
  }
}

std::unique_ptr<ID3FrameCreator> ID3FramesWithLocalizedContentCreatorFactory::make(const FrameKind& kind) {
  return std::make_unique<ID3FramesWithLocalizedContentCreator>(
      kind,
      std::make_unique<ID3LocalizedFrameCreator>(
          ID3FrameHeaderCreatorFactory::make(), std::make_unique<PaddingAdderToEndOfContentUsingNullChar>()));
}

}  // namespace ID3TagEditor
