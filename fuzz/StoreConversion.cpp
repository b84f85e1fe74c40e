#include <utility>
#include <vector>

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/engine/EngineTag.h"
#include "QuillmarkKit/store/engine/RawFrames.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ReadingRules.h"

using namespace QuillmarkKit;
using ID3Frames::UnmanagedFrames;
using platform::SharedBytes;

namespace {

const ID3TagEditor::ID3TagEditor& editor() {
  static const ID3TagEditor::ID3TagEditor editor;
  return editor;
}

/// Returns the fields of the tag that are read from a written tag as they were.
TagSet lastingTags(const ID3TagEditor::ID3Tag& tag) {
  TagSet tags = tagSetFrom(tag);
  // Removing a zero byte may expose white space, so normalise until nothing changes.
  for (TagSet once = tags.normalized(); once != tags; once = tags.normalized()) tags = once;
  if (tags.genre && fuzz::isGenreReadInParts(*tags.genre)) tags.genre.reset();
  if (tags.comment && fuzz::isContentReadInParts(*tags.comment)) tags.comment.reset();
  if (tags.lyrics && fuzz::isContentReadInParts(*tags.lyrics)) tags.lyrics.reset();
  return tags;
}

/// Returns a tag of the frames that no tag set contains, made by `ID3Frames::tagData`.
platform::Bytes tagOfUnmanagedFrames(const SharedBytes& contents) {
  auto tag = ID3Frames::parse(contents).value_or(ID3Frames::ParsedTag());
  std::erase_if(tag.frames, [](const QuillmarkKit::ID3Frame& frame) { return isFieldFrame(frame.id); });
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

/// Returns a tag with the tag set, followed by the frames that no tag set contains.
SharedBytes written(const TagSet& tags, const UnmanagedFrames& unmanaged) {
  ID3TagEditor::ID3Tag tag = makeTag(tags);
  platform::Bytes bytes = editor().write(tag, SharedBytes());
  if (!unmanaged.empty()) ID3Frames::appendTo(bytes, unmanaged, "written.mp3");
  return bytes;
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

  const UnmanagedFrames unmanaged(input);
  platform::Bytes carried;
  unmanaged.appendTo(carried);
  const platform::Bytes expected = tagOfUnmanagedFrames(input);
  require(platform::charactersOf(expected).substr(10) == platform::charactersOf(carried),
          "both ways find the same unmanaged frames");
  const SharedBytes file = written(tags, unmanaged);
  const auto back = editor().read(file);
  require(back && tagSetFrom(*back) == tags, "a tag set is read as it was written");
  require(tagOfUnmanagedFrames(file) == expected, "every other frame stays as it was");
  require(written(tags, UnmanagedFrames(file)) == file, "writing again changes nothing");
}
