#pragma once

#include <filesystem>

#include "QuillmarkKit/model/TagSet.h"

namespace QuillmarkKit {

/// Where tag sets are kept, one for each file.
class TagStore {
 public:
  virtual ~TagStore() = default;
  /// The file's tags. Throws when they cannot be read.
  virtual TagSet read(const std::filesystem::path& from) const = 0;
  /// Makes `tags` the file's tags: what is absent in them is absent in the file then. Throws when they cannot
  /// be written.
  virtual void write(const TagSet& tags, const std::filesystem::path& to) const = 0;
  /// The same for who has made `tags` of what the file held: a store that others may write to at the same
  /// time throws platform::FileConflict when the file holds something else than `current` by now, and does
  /// nothing.
  virtual void replace(TagSet /*current*/, const TagSet& tags, const std::filesystem::path& in) const {
    write(tags, in);
  }
  /// Waits until everything that was written is safe. Throws when it cannot be.
  virtual void synchronise() const {}
};

}  // namespace QuillmarkKit
