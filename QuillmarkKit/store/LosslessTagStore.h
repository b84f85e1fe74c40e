#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Keeps tag sets as ID3v2.3 tags, read and changed by the ID3v2 standards: a write changes the frames of the
/// fields that differ from what the file holds, and everything else says afterwards what it said before. An
/// ID3v1 tag is read where there is no ID3v2 tag. A file of which something could not be kept fails with
/// LosslessError; TagFileError is thrown as by the other store.
class LosslessTagStore : public MP3TagStore {
 public:
  using MP3TagStore::MP3TagStore;

  TagSet readSource(const std::filesystem::path& from, TagFields fields) const override;
  TagSet accepted(const TagSet& tags, TagFields fields) const override;
  bool saysMore(TagFields fields, const std::filesystem::path& in) const override;

 protected:
  TagSet tagsIn(platform::FileHandle& file) const override;
  NewTag newTag(const Change& change, platform::FileHandle& file) const override;
  bool failsInPreview() const override { return true; }
};

}  // namespace QuillmarkKit
