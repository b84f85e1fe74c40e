#pragma once

#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "QuillmarkKit/store/standard/FileTags.h"

namespace QuillmarkKit {

/// A tag as the ID3v2 standards define it or, if there is none, the ID3v1 tag at the end of the file. A
/// change keeps the version of the tag, except that v2.2 becomes v2.3, and all frames but those of the fields
/// that differ. Throws LosslessError, which names the file, if anything else would be lost.
class StandardTag : public OpenTag {
 public:
  /// Throws the errors of MP3File.
  explicit StandardTag(MP3File& file);

  const TagSet& tags() const override { return tags_; }
  bool holdsMoreThanValues(TagFields fields) const override;
  void requireWritableElsewhere(TagFields fields) const override;
  UnrepresentableValues unrepresentableValues() const override;
  SourceNotes sourceNotes(TagFields fields) const override;
  bool isLossless() const override { return true; }
  /// Returns a new tag without bytes if no frame would be left.
  NewTag changedBy(const TagChange& change) override;

 private:
  TagFields unrepresentableFields(TagFields fields) const;
  std::string losses(TagFields unrepresentable) const;

  const std::filesystem::path& path_;
  FileTags file_;
  TagSet tags_;
};

/// Returns the tags as they would be read after they are written. Throws LosslessError if no tag can contain
/// the value of one of the fields.
TagSet acceptedTags(const TagSet& tags, TagFields fields);

}  // namespace QuillmarkKit
