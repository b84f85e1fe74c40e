#pragma once

#include <string>

#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "QuillmarkKit/store/standard/FileTags.h"
#include "platform/base/Bytes.h"

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

/// The tag of a file that is to be replaced with a copy of another file's tag.
class CopiedTag : public OpenTag {
 public:
  /// `newTag` must be a whole ID3v2 tag, header included. Throws the errors of MP3File.
  CopiedTag(MP3File& file, platform::SharedBytes newTag, bool keepsAPETag);

  const TagSet& tags() const override { return tags_; }
  /// Returns whether the tag differs from the new one in any byte.
  bool holdsMoreThanValues(TagFields) const override { return !isSame_; }
  void requireWritableElsewhere(TagFields) const override {}
  bool isLossless() const override { return true; }
  /// Returns the other file's tag. Throws LosslessError if it would hide an APE tag that is to be kept, and
  /// if the old tag is damaged: its size may be wrong, so that it takes in audio.
  NewTag changedBy(const TagChange& change) override;

 private:
  const std::filesystem::path& path_;
  platform::SharedBytes newTag_;
  bool keepsAPETag_;
  bool hasAPETag_;
  bool hasOnlyID3v1Tag_;
  /// Names data in the old tag that is not a frame and can be audio; empty if there is none.
  std::string damage_;
  bool isSame_;
  std::uint64_t audioStart_;
  TagSet tags_;
};

/// Returns the ID3v2 tag of the file as bytes. Throws the errors of MP3File, and LosslessError if there is no
/// tag or a part of it is damaged.
platform::SharedBytes wholeTag(const std::filesystem::path& path);

}  // namespace QuillmarkKit
