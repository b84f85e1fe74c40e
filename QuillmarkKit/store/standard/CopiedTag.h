#pragma once

#include <string>

#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

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
