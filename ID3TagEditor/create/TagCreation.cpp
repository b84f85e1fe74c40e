#include "ID3TagEditor/create/TagCreation.h"

#include <algorithm>

#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "platform/base/Formats.h"

namespace ID3TagEditor {

using platform::Bytes;

namespace {

/// Returns the number of bytes to reserve for the frames: the size of the pictures, which are most of a long
/// tag, and a usual amount for the rest.
std::size_t expectedSize(const ID3Tag& tag) {
  std::size_t size = 0x2000;
  for (const auto* frame : picturesIn(tag)) size += frame->picture().size();
  return size;
}

}  // namespace

void ID3FramesCreator::createFramesUsing(const ID3Tag& id3Tag, Bytes& output, std::size_t spare) const {
  const std::size_t before = output.size();
  output.reserve(before + expectedSize(id3Tag) + spare);
  for (const auto& creator : id3FrameCreators_) creator->createFrames(id3Tag, output);
  if (output.size() == before) throw ID3TagEditorError(ID3TagEditorError::invalidTagData);
  output.resize(output.size() + platform::usualPadding);
}

Bytes ID3TagHeaderCreator::createTagHeader(std::uint32_t contentSize, ID3Tag& id3Tag) const {
  id3Tag.properties.size = contentSize;
  const auto prefix = id3TagConfiguration_.headerFor(id3Tag.properties.version);
  Bytes header(prefix.begin(), prefix.end());
  constexpr std::uint8_t noFlags = 0x00;
  header.push_back(noFlags);
  platform::append(header, uInt32ToByteArrayAdapter_.adapt(SynchsafeIntegerEncoder().encode(contentSize)));
  return header;
}

Bytes ID3TagCreator::create(ID3Tag& id3Tag, std::size_t spare) const {
  // The frames are appended after room for the header, so that no picture has to be moved.
  Bytes tag(ID3TagConfiguration::headerSize());
  id3FramesCreator_.createFramesUsing(id3Tag, tag, spare);
  const std::uint64_t contentSize = tag.size() - ID3TagConfiguration::headerSize();
  const auto statedSize = static_cast<std::uint32_t>(std::min<std::uint64_t>(contentSize, UINT32_MAX));
  const Bytes header = id3TagHeaderCreator_.createTagHeader(statedSize, id3Tag);
  if (tag.size() >= tagSizeLimit) throw ID3TagEditorError(ID3TagEditorError::tagTooBig);
  std::ranges::copy(header, tag.begin());
  return tag;
}

}  // namespace ID3TagEditor
