#include <sys/mman.h>
#include <unistd.h>

#include <utility>
#include <vector>

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/ID3Frames.h"
#include "QuillmarkKit/store/TagConversion.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ReadingRules.h"
#include "platform/FileHandle.h"

using namespace QuillmarkKit;
using ID3Frames::FrameData;
using platform::SharedBytes;

namespace {

const ID3TagEditor::ID3TagEditor& editor() {
  static const ID3TagEditor::ID3TagEditor editor;
  return editor;
}

/// What the file's tag holds as far as it can come back as it was.
TagSet lastingTags(const ID3TagEditor::ID3Tag& tag) {
  TagSet tags = tagSetFrom(tag);
  // White space before a zero byte is trimmed only once the zero byte is gone.
  for (TagSet once = tags.normalized(); once != tags; once = tags.normalized()) tags = once;
  if (tags.genre && fuzz::isGenreReadInParts(*tags.genre)) tags.genre.reset();
  if (tags.comment && fuzz::isContentReadInParts(*tags.comment)) tags.comment.reset();
  if (tags.lyrics && fuzz::isContentReadInParts(*tags.lyrics)) tags.lyrics.reset();
  return tags;
}

/// The frames that no tag set holds, from an open file, which is where the store takes them.
FrameData unmanagedFrames(const SharedBytes& contents) {
  const int descriptor = ::memfd_create("input.mp3", MFD_CLOEXEC);
  const auto count = ::write(descriptor, contents.view().data(), contents.size());
  require(std::cmp_equal(count, contents.size()), "a file in memory takes any bytes");
  ::lseek(descriptor, 0, SEEK_SET);
  platform::FileHandle file("input.mp3", descriptor);
  return ID3Frames::unmanagedFrameData(file);
}

/// The same frames by the other road.
platform::Bytes tagOfUnmanagedFrames(const SharedBytes& contents) {
  auto tag = ID3Frames::parse(contents).value_or(ID3Frames::ParsedTag());
  std::erase_if(tag.frames,
                [](const QuillmarkKit::ID3Frame& frame) { return ID3Frames::isManaged(frame.id); });
  return ID3Frames::tagData(tag.frames, 0, "input.mp3");
}

void checkRawFrames(const SharedBytes& input) {
  const auto tag = ID3Frames::parse(input);
  if (!tag) return;
  require(tag->audioOffset <= input.size(), "the tag lies inside the bytes");
  std::size_t payloads = 0;
  for (const auto& frame : tag->frames) payloads += frame.payload.size();
  require(payloads + 10 * tag->frames.size() + 10 <= tag->audioOffset, "frames do not overlap");
  constexpr std::int64_t padding = 16;
  const SharedBytes written = ID3Frames::tagData(tag->frames, padding, "written.mp3");
  const auto again = ID3Frames::parse(written);
  require(again && again->frames == tag->frames, "written frames are read as they were");
  require(again->version == 3 && again->audioOffset == written.size(), "the whole of it is a tag of v2.3");
}

/// A tag with the tag set and, behind it, the frames that no tag set holds.
SharedBytes written(const TagSet& tags, const FrameData& unmanaged) {
  ID3TagEditor::ID3Tag tag = makeTag(tags);
  platform::Bytes bytes = editor().write(tag, SharedBytes());
  return unmanaged.bytes.empty() ? bytes : ID3Frames::appending(unmanaged, std::move(bytes), "written.mp3");
}

}  // namespace

void fuzzTarget(const SharedBytes& input) {
  checkRawFrames(input);
  std::optional<ID3TagEditor::ID3Tag> tag;
  try {
    tag = editor().read(input);
  } catch (const ID3TagEditor::ID3TagEditorError&) {
  }
  if (!tag) return;
  const TagSet tags = lastingTags(*tag);
  if (tags.isEmpty()) return;

  const FrameData unmanaged = unmanagedFrames(input);
  const platform::Bytes expected = tagOfUnmanagedFrames(input);
  require(platform::charactersOf(expected).substr(10) == platform::charactersOf(unmanaged.bytes),
          "a frame is unmanaged by either road");
  const SharedBytes file = written(tags, unmanaged);
  const auto back = editor().read(file);
  require(back && tagSetFrom(*back) == tags, "a tag set is read as it was written");
  require(tagOfUnmanagedFrames(file) == expected, "every other frame stays as it was");
  require(written(tags, unmanagedFrames(file)) == file, "writing again changes nothing");
}
