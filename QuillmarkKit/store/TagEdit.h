#pragma once

#include <string>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/file/OpenTag.h"

namespace QuillmarkKit {

/// A change of one file's tags, from the first look at the file to its replacement: `current`, then
/// `isNeeded` and `plan` for the same change, then `commit`. Destroyed without `commit`, it leaves the file
/// as it was.
class TagEdit {
 public:
  virtual ~TagEdit() = default;

  /// The tags that the file held when it was opened.
  virtual const TagSet& current() const = 0;
  /// Returns whether the change would change the file.
  virtual bool isNeeded(const TagChange& change) const = 0;
  struct Plan {
    /// What the file would lose, as a sentence without its subject; empty if nothing, or not asked for.
    std::string losses = {};
    /// Whether the artwork that the file has stays in it, although it gets another.
    bool keepsArtwork = false;
  };
  /// Prepares the change without writing; finds out about losses only if `reportsLosses`. Throws what
  /// `commit` would throw about the tags, unless the store leaves that to `commit`: a dry run then reports
  /// the change.
  virtual Plan plan(const TagChange& change, bool reportsLosses) = 0;
  /// Writes what was planned. Returns a note about it, as a sentence without its subject; empty if there is
  /// nothing to note. Throws platform::FileConflict if the file has changed since it was opened, and
  /// whatever else keeps it from being written; the file is then as it was.
  virtual std::string commit() = 0;
};

}  // namespace QuillmarkKit
