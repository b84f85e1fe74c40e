#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/TagEdit.h"
#include "platform/ReplacementRun.h"

namespace QuillmarkKit {

/// Keeps tag sets, one for each file. A store that has only `read` and `write` works with everything that
/// takes a store.
class TagStore {
 public:
  virtual ~TagStore() = default;
  /// Returns the file's tags. Throws if they cannot be read.
  virtual TagSet read(const std::filesystem::path& from) const = 0;
  /// Makes `tags` the file's tags: a field that is absent in them is absent in the file afterwards. Throws if
  /// they cannot be written.
  virtual void write(const TagSet& tags, const std::filesystem::path& to) const = 0;

  /// Opens the file for a change of its tags. Replacements in `run` share what files in a row can share; it
  /// must outlive the result, as must the store. Throws if the tags cannot be read. By default, reads with
  /// `read` and writes with `write`.
  virtual std::unique_ptr<TagEdit> edit(const std::filesystem::path& file,
                                        platform::ReplacementRun& run) const;

  /// The tags of a file whose fields are to be written into others.
  struct Source {
    TagSet tags;
    /// How the store reads some of the fields otherwise than they were meant, as a sentence without its
    /// subject; empty if it does not.
    std::string losses = {};
    /// The values of fields that the store cannot write into other files.
    UncarriedValues uncarried = {};
    /// What the tag contains that no field holds, as an enumeration for people; empty if nothing.
    std::string beyondFields = {};
  };
  /// Reads a source for `fields`; finds out about `losses` and `beyondFields` only if `reportsLosses`. Throws
  /// if one of the fields holds something that the store cannot write into other files, unless
  /// `acceptsUncarried`.
  virtual Source source(const std::filesystem::path& from, TagFields fields, bool reportsLosses,
                        bool acceptsUncarried = false) const;
  /// Returns the tags in the form in which the store returns them after they are written. Throws if it cannot
  /// hold one of the fields.
  virtual TagSet accepted(const TagSet& tags, TagFields fields) const;
};

}  // namespace QuillmarkKit
