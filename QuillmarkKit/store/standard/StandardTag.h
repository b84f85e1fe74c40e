#pragma once

#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "QuillmarkKit/store/standard/FileTags.h"

namespace QuillmarkKit {

/// A tag as the ID3v2 standards define it or, if there is none, the ID3v1 tag at the end of the file. A
/// change of fields keeps the version of the tag, except that v2.2 becomes v2.3, and all frames but those of
/// the fields that differ. Throws LosslessError, which names the file, if anything else would be lost.
class StandardTag : public OpenTag {
 public:
  /// Throws the errors of MP3File.
  explicit StandardTag(MP3File& file);

  const TagSet& tags() const override { return tags_; }
  SourceNotes notes(TagFields fields) const override;
  UnrepresentableValues unrepresentableValues() const override;
  void requireWritableElsewhere(TagFields fields) const override;
  /// A whole tag changes the file if any byte differs.
  bool isChangedBy(const TagChange& change) const override;
  /// Returns a new tag without bytes if no frame would be left. Throws LosslessError for a whole tag that
  /// would hide an APE tag, unless it may, and for one in place of a damaged tag: the size of that may be
  /// wrong, so that it takes in audio.
  NewTag changedBy(const TagChange& change, bool reportsLosses) const override;

  /// Returns the change that gives another file this tag. Throws LosslessError if there is no ID3v2 tag or a
  /// part of it is damaged.
  TagChange copied() const;

 private:
  TagFields unrepresentableFields(TagFields fields) const;
  NewTag replacedBy(const TagChange& change) const;

  const std::filesystem::path& path_;
  FileTags file_;
  /// The size of the ID3v2 tag by its header.
  std::size_t claimedSize_;
  /// The bytes before the audio.
  platform::SharedBytes bytes_;
  TagSet tags_;
};

/// Returns the tags as they would be read after they are written. Throws LosslessError if no tag can contain
/// the value of one of the fields.
TagSet acceptedTags(const TagSet& tags, TagFields fields);

}  // namespace QuillmarkKit
