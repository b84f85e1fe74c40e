#include "ID3TagEditor/create/FrameHeaders.h"

#include "ID3TagEditor/model/ID3TagEditorError.h"

namespace ID3TagEditor {

using platform::Bytes;

void ID3FrameContentSizeCalculator::calculateSizeOf(std::uint64_t contentSize, ID3Version version,
                                                    Bytes& output) const {
  // Only the size field of v2.2 is checked here: a frame that is too long for that of another version makes
  // the whole tag too big, and the tag is then refused.
  constexpr std::uint64_t version2Limit = std::uint64_t{1} << 24;
  if (version == ID3Version::version2 && contentSize >= version2Limit) {
    throw ID3TagEditorError(ID3TagEditorError::tagTooBig);
  }
  const auto size = static_cast<std::uint32_t>(contentSize);
  const auto field = uInt32ToByteArrayAdapter_->adapt(
      version == ID3Version::version4 ? synchsafeEncoder_->encode(size) : size);
  platform::append(output, platform::ByteView(field).subspan(version == ID3Version::version2 ? 1 : 0));
}

void ID3FrameFlagsCreator::createFor(ID3Version version, Bytes& output) const {
  if (version != ID3Version::version2) output.insert(output.end(), {0x00, 0x00});
}

void ID3FrameHeaderCreator::createUsing(ID3Version version, FrameType frameType, std::uint64_t bodySize,
                                        Bytes& output) const {
  platform::append(output, platform::bytesOf(id3FrameConfiguration_.identifierFor(frameType, version)));
  frameContentSizeCalculator_->calculateSizeOf(bodySize, version, output);
  frameFlagsCreator_->createFor(version, output);
}

std::unique_ptr<FrameHeaderCreator> ID3FrameHeaderCreatorFactory::make() {
  return std::make_unique<ID3FrameHeaderCreator>(
      std::make_unique<ID3FrameContentSizeCalculator>(
          std::make_unique<UInt32ToByteArrayAdapterUsingUnsafePointer>(),
          std::make_unique<SynchsafeIntegerEncoder>()),
      std::make_unique<ID3FrameFlagsCreator>());
}

}  // namespace ID3TagEditor
