#pragma once

#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "QuillmarkKit/store/standard/FileTags.h"

namespace QuillmarkKit {

/// A tag as the ID3v2 standards mean it; where there is none, the ID3v1 tag at the file's end. A new tag is
/// ID3v2.3: the frames of the fields that differ change, and every other frame says what it said before.
/// Refuses with LosslessError, which names the file, whatever would lose something.
class StandardTag : public OpenTag {
 public:
  /// Throws what MP3File throws.
  explicit StandardTag(MP3File& file);

  const TagSet& tags() const override { return tags_; }
  bool holdsMoreThanValues(TagFields fields) const override;
  void requireCarriable(TagFields fields) const override;
  UncarriedValues uncarried() const override;
  SourceNotes sourceNotes(TagFields fields) const override;
  bool isLossless() const override { return true; }
  /// Returns an empty tag if no frame would be left.
  NewTag changedBy(const TagChange& change) override;

 private:
  TagFields uncarriedFields(TagFields fields) const;
  std::string losses(TagFields uncarried) const;

  const std::filesystem::path& path_;
  FileTags file_;
  TagSet tags_;
};

/// Returns the tags in the form in which a tag returns them after they are written. Throws LosslessError if
/// no tag can hold one of the fields.
TagSet acceptedTags(const TagSet& tags, TagFields fields);

}  // namespace QuillmarkKit
