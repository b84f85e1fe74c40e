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
};

}  // namespace QuillmarkKit
