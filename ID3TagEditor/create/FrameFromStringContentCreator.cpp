#include "ID3TagEditor/create/FrameFromStringContentCreator.h"

namespace ID3TagEditor {

void ID3FrameFromStringContentCreator::createFrame(FrameType frameType, ID3Version version,
                                                   std::string_view content, platform::Bytes& output) const {
  const platform::Bytes body = stringToBytesAdapter_->adapt(content, version);
  frameHeaderCreator_->createUsing(version, frameType, body.size(), output);
  platform::append(output, body);
}

namespace {

template <class Adapter>
std::unique_ptr<FrameFromStringContentCreator> creatorWith() {
  return std::make_unique<ID3FrameFromStringContentCreator>(
      ID3FrameHeaderCreatorFactory::make(),
      std::make_unique<Adapter>(std::make_unique<PaddingAdderToEndOfContentUsingNullChar>()));
}

}  // namespace

std::unique_ptr<FrameFromStringContentCreator>
ID3FrameFromStringContentCreatorWithISO88591EncodingFactory::make() {
  return creatorWith<ID3ISO88591StringToByteAdapter>();
}

std::unique_ptr<FrameFromStringContentCreator>
ID3FrameFromStringContentCreatorWithUTF16EncodingFactory::make() {
  return creatorWith<ID3UTF16StringToByteAdapter>();
}

}  // namespace ID3TagEditor
