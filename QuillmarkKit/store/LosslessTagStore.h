#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Keeps tag sets as ID3v2.3 tags, read and changed by the ID3v2 standards: a write changes the frames of the
/// fields that differ from what the file holds, and everything else says afterwards what it said before. An
/// ID3v1 tag is read where there is no ID3v2 tag. Throws LosslessError for a file of which something could
/// not be kept.
class LosslessTagStore : public MP3TagStore {
 public:
  explicit LosslessTagStore(bool preservesDate);

  TagSet accepted(const TagSet& tags, TagFields fields) const override;
};

}  // namespace QuillmarkKit
