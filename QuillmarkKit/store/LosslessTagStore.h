#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Keeps tag sets in tags that are read and changed by the ID3v2 standards: a write changes the frames of the
/// fields that differ, and keeps the version of the tag and all other frames byte for byte. Tags of v2.2, and
/// new ones, are written as ID3v2.3. An ID3v1 tag is read if there is no ID3v2 tag. Throws LosslessError for
/// a file of which something could not be kept.
class LosslessTagStore : public MP3TagStore {
 public:
  explicit LosslessTagStore(bool preservesDate);

  TagSet accepted(const TagSet& tags, TagFields fields) const override;

 protected:
  /// Throws LosslessError if there is an ID3v2 tag after the file's start.
  void explainUnsupported(const std::filesystem::path& path) const override;
};

}  // namespace QuillmarkKit
