#include "ID3TagEditor/create/ID3FramesCreator.h"

#include "ID3TagEditor/model/FramesInTag.h"
#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "platform/base/Formats.h"

namespace ID3TagEditor {

namespace {

/// Returns the number of bytes to reserve for the frames: the size of the pictures, which are most of a long
/// tag, and a usual amount for the rest.
std::size_t expectedSize(const ID3Tag& tag) {
  std::size_t size = 0x2000;
  for (const auto* frame : picturesIn(tag)) size += frame->picture().size();
  return size;
}

}  // namespace

void ID3FramesCreator::createFramesUsing(const ID3Tag& id3Tag, platform::Bytes& output,
                                         std::size_t spare) const {
  const std::size_t before = output.size();
  output.reserve(before + expectedSize(id3Tag) + spare);
  for (const auto& creator : id3FrameCreators_) creator->createFrames(id3Tag, output);
  if (output.size() == before) throw ID3TagEditorError(ID3TagEditorError::invalidTagData);
  output.resize(output.size() + platform::usualPadding);
}

}  // namespace ID3TagEditor
