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
  /// nothing. It has `current` for its own, to let go of its pictures before the new tag is put together. Of
  /// what is absent in `tags`, the `cleared` fields were asked to be: what `saysMore` is about goes only
  /// there.
  // NOLINTNEXTLINE(performance-unnecessary-value-param)
  virtual void replace(TagSet /*current*/, const TagSet& tags, TagFields /*cleared*/,
                       const std::filesystem::path& in) const {
    write(tags, in);
  }
  /// Fails as `replace` would, and tells what it would tell; nothing is written.
  virtual void preview([[maybe_unused]] const TagSet& current, [[maybe_unused]] const TagSet& tags,
                       [[maybe_unused]] TagFields cleared,
                       [[maybe_unused]] const std::filesystem::path& in) const {}
  /// Whether the file says about one of the fields something that no value of it can say.
  virtual bool saysMore([[maybe_unused]] TagFields fields,
                        [[maybe_unused]] const std::filesystem::path& in) const {
    return false;
  }
  /// The tags of a file whose fields are to be written into others. Throws when one of them holds what the
  /// store cannot carry there.
  virtual TagSet readSource(const std::filesystem::path& from, [[maybe_unused]] TagFields fields) const {
    return read(from);
  }
  /// The tags in the form in which the store gives them back once they are written. Throws when it cannot
  /// hold one of the fields.
  virtual TagSet accepted(const TagSet& tags, [[maybe_unused]] TagFields fields) const { return tags; }
  /// Waits until everything that was written is safe. Throws when it cannot be.
  virtual void synchronise() const {}
};

}  // namespace QuillmarkKit
