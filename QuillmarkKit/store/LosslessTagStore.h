#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Reads and writes tags by the ID3v2 standards. A write changes the frames of the fields that differ, and
/// keeps the version of the tag and all other frames byte for byte. Tags of v2.2 and new tags are written as
/// ID3v2.3. If there is no ID3v2 tag, an ID3v1 tag is read. Throws LosslessError if something would be lost.
class LosslessTagStore : public MP3TagStore {
 public:
  explicit LosslessTagStore(bool preservesDate);

  TagSet accepted(const TagSet& tags, TagFields fields) const override;

 protected:
  /// Throws LosslessError if an ID3v2 tag starts in the first 64 KiB of the file, after other data.
  void explainUnsupported(const std::filesystem::path& path) const override;
};

}  // namespace QuillmarkKit
