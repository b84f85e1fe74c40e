#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "QuillmarkKit/model/TagChange.h"
#include "platform/ReplacementRun.h"

namespace QuillmarkKit {

/// A change of one file's tags, from reading them to replacing the file. Call `current`, then `isNeeded` and
/// `plan` with the same change, then `commit`. The file is unchanged until `commit`.
class TagEdit {
 public:
  virtual ~TagEdit() = default;

  /// Returns the tags that the file had when it was opened.
  virtual const TagSet& current() const = 0;
  /// Returns whether the change, whose `tags` must be the values of all fields after it, requires the file to
  /// be rewritten.
  virtual bool isNeeded(const TagChange& change) const = 0;
  struct Plan {
    /// The data that the file would lose, as a sentence without its subject; empty if there is none or losses
    /// are not reported.
    std::string losses = {};
    /// Whether the old artwork stays in the file in addition to the new one.
    bool keepsArtwork = false;
  };
  /// Prepares the change without writing. Determines losses only if `reportsLosses`. Throws if the new tag
  /// cannot be made; a store may leave that error to `commit`, and a dry run then reports the change.
  virtual Plan plan(const TagChange& change, bool reportsLosses) = 0;
  /// Writes the planned change. Returns a note about it as a sentence, or an empty text. Throws
  /// platform::FileConflict if the file has changed since it was opened, and other errors if it cannot be
  /// written; the file is then unchanged.
  virtual std::string commit() = 0;
};

/// Reads and writes the tags of files.
class TagStore {
 public:
  virtual ~TagStore() = default;
  /// Returns the file's tags. Throws if they cannot be read.
  virtual TagSet read(const std::filesystem::path& from) const = 0;
  /// Replaces the file's tags with `tags`; fields that are absent there are removed from the file. Throws if
  /// the tags cannot be written.
  virtual void write(const TagSet& tags, const std::filesystem::path& to) const = 0;
  /// Opens the file for a change of its tags. Consecutive replacements share resources through `run`. The
  /// store and `run` must outlive the result. Throws if the tags cannot be read.
  virtual std::unique_ptr<TagEdit> edit(const std::filesystem::path& file,
                                        platform::ReplacementRun& run) const = 0;
};

}  // namespace QuillmarkKit
