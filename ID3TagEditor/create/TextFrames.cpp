#include "ID3TagEditor/create/TextFrames.h"

#include <optional>
#include <string>

#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/Strings.h"

namespace ID3TagEditor {

using platform::Bytes;

Bytes utf16(std::string_view text) {
  return platform::Strings::toUTF16WithMark(text).value_or(Bytes());
}

Bytes ID3UTF16StringToByteAdapter::adapt(std::string_view string, ID3Version version) const {
  Bytes body{frameConfiguration_.encodingByteFor(version, ID3StringEncoding::UTF16)};
  platform::append(body, utf16(string));
  paddingAdder_->addPaddingTo(body, 2);
  return body;
}

Bytes ID3ISO88591StringToByteAdapter::adapt(std::string_view string, ID3Version version) const {
  const std::optional<Bytes> text = platform::Strings::toLatin1(string);
  if (!text) {
    return ID3UTF16StringToByteAdapter(std::make_unique<PaddingAdderToEndOfContentUsingNullChar>())
        .adapt(string, version);
  }
  Bytes body{frameConfiguration_.encodingByteFor(version, ID3StringEncoding::ISO88591)};
  platform::append(body, *text);
  paddingAdder_->addPaddingTo(body, 1);
  return body;
}

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
