#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/TagEdit.h"
#include "platform/ReplacementRun.h"

namespace QuillmarkKit {

/// Reads and writes the tags of files. Derived classes must implement only `read` and `write`.
class TagStore {
 public:
  virtual ~TagStore() = default;
  /// Returns the file's tags. Throws if they cannot be read.
  virtual TagSet read(const std::filesystem::path& from) const = 0;
  /// Replaces the file's tags with `tags`; fields that are absent there are removed from the file. Throws if
  /// the tags cannot be written.
  virtual void write(const TagSet& tags, const std::filesystem::path& to) const = 0;

  /// Opens the file for a change of its tags. Consecutive replacements share resources through `run`. The
  /// store and `run` must outlive the result. Throws if the tags cannot be read. By default, reads with
  /// `read` and writes with `write`.
  virtual std::unique_ptr<TagEdit> edit(const std::filesystem::path& file,
                                        platform::ReplacementRun& run) const;

  /// The tags of a file that are to be written into other files.
  struct Source {
    TagSet tags;
    /// The fields that the store does not read as the standards define them, as a sentence; empty if there
    /// are none.
    std::string losses = {};
    /// The values that the store cannot write into other files.
    UnrepresentableValues unrepresentable = {};
    /// The contents of the tag that belong to no field, as an enumeration for people; empty if there are
    /// none.
    std::string beyondFields = {};
  };
  /// Returns a source for `fields`. Determines `losses` and `beyondFields` only if `reportsLosses`. Throws if
  /// the tag has a value for one of the fields that the store cannot write into other files, unless
  /// `acceptsUnrepresentable`.
  virtual Source source(const std::filesystem::path& from, TagFields fields, bool reportsLosses,
                        bool acceptsUnrepresentable = false) const;
  /// Returns the tags as the store would read them after writing them. Throws if the store cannot write one
  /// of the fields.
  virtual TagSet accepted(const TagSet& tags, TagFields fields) const;
};

}  // namespace QuillmarkKit
