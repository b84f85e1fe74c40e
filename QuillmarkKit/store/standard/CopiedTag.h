#pragma once

#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// The tag of a file that is to be replaced by another file's tag, as it is.
class CopiedTag : public OpenTag {
 public:
  /// `newTag` is a whole ID3v2 tag, header included. Throws what MP3File throws.
  CopiedTag(MP3File& file, platform::SharedBytes newTag, bool keepsAPETag);

  const TagSet& tags() const override { return tags_; }
  /// Returns whether the tags differ as bytes.
  bool holdsMoreThanValues(TagFields) const override { return !isSame_; }
  void requireCarriable(TagFields) const override {}
  bool isLossless() const override { return true; }
  /// Returns the other file's tag. Throws LosslessError if it would hide an APE tag that is to be kept.
  NewTag changedBy(const TagChange& change) override;

 private:
  const std::filesystem::path& path_;
  platform::SharedBytes newTag_;
  bool keepsAPETag_;
  bool hasAPETag_;
  bool isSame_;
  std::uint64_t audioStart_;
  TagSet tags_;
};

/// Returns the file's ID3v2 tag as bytes. Throws what MP3File throws, and LosslessError if there is none or a
/// part of it is damaged.
platform::SharedBytes wholeTag(const std::filesystem::path& path);

}  // namespace QuillmarkKit
