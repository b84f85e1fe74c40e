#pragma once

#include <cstdint>
#include <optional>

#include "ID3TagEditor/model/ID3Tag.h"
#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"

namespace QuillmarkKit {

/// Returns the fields of the tag, normalised: one comment, one lyrics text and one picture, the front cover
/// if there is one.
TagSet tagSetFrom(const ID3TagEditor::ID3Tag& tag);

/// Returns an ID3v2.3 tag with the fields. Omits a total without its number, which no frame can contain.
ID3TagEditor::ID3Tag makeTag(const TagSet& from);

}  // namespace QuillmarkKit

namespace ID3TagEditor {
class ID3TagEditor;
}

namespace QuillmarkKit {

/// A tag as the engine reads it. A new tag is ID3v2.3: the frames of the fields, followed by the frames of
/// the old tag that belong to no field, byte for byte. Does not add the name of the file to errors of the
/// engine.
class EngineTag {
 public:
  /// Throws ID3TagEditor::ID3TagEditorError and what MP3File throws. The editor and the file must outlive
  /// this object.
  EngineTag(const ID3TagEditor::ID3TagEditor& editor, MP3File& file);

  const TagSet& tags() const { return tags_; }
  /// Returns the tag with these fields. Also throws ID3FrameError.
  NewTag changedBy(const TagSet& wanted) const;

 private:
  const ID3TagEditor::ID3TagEditor& editor_;
  MP3File& file_;
  /// The size of the tag in bytes; absent if the engine has not found one.
  std::optional<std::uint64_t> length_;
  TagSet tags_;
};

}  // namespace QuillmarkKit
