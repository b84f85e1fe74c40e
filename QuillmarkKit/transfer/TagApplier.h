#pragma once

#include <cstddef>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/TagStore.h"
#include "platform/ReplacementRun.h"

namespace QuillmarkKit {

/// Writes fields of one tag set into files. Changes the selected fields and no others, writes only the files
/// that change, and goes on after one that fails. A selected field that is absent in the tag set is removed
/// from the files; without artwork in the tag set, selecting the artwork removes their pictures.
class TagApplier {
 public:
  /// What a write changes, as far as the applier was asked for it.
  struct Change {
    TagSet tags;
    /// The file's tags before the change.
    std::optional<TagSet> before;
    /// What the file loses although it was not asked for, as a sentence without its subject; empty if
    /// nothing.
    std::string losses;
    /// Whether the artwork in `before` stays in the file, although it got another.
    bool keepsArtwork;
    /// The store's note about the write, likewise.
    std::string note;
  };
  /// The file was rewritten with these tags.
  struct Updated : Change {};
  /// In a dry run: the file would have been rewritten with these tags.
  struct WouldUpdate : Change {};
  /// The file could not be read or written.
  struct Failed {
    std::exception_ptr error;
    /// The error's description.
    std::string message;
  };
  /// The file holds the values already and was not written.
  struct Unchanged {};
  using Outcome = std::variant<Updated, WouldUpdate, Failed, Unchanged>;

  struct Result {
    std::filesystem::path url;
    Outcome outcome;
  };

  /// What the outcomes contain besides the tags.
  struct Details {
    bool before;
    bool losses;
  };

  /// The store must outlive the applier.
  explicit TagApplier(const TagStore& store) : TagApplier(store, {.before = false, .losses = false}) {}
  TagApplier(const TagStore& store, Details details) : store_(store), details_(details) {}
  explicit TagApplier(const TagStore&& store) = delete;
  TagApplier(const TagStore&& store, Details details) = delete;

  /// Applies the fields to one file. Replacements share what files in a row can share through `run`; the
  /// caller must synchronise it after the last file.
  Result applyToOne(const TagSet& source, const std::filesystem::path& to, TagFields fields, bool dryRun,
                    platform::ReplacementRun& run) const;
  /// Applies the fields to one file after another and returns what became of each, in their order, after all
  /// that was written has reached the disk. A file whose folder could not be synchronised has failed.
  std::vector<Result> apply(const TagSet& source, const std::vector<std::filesystem::path>& to,
                            TagFields fields, bool dryRun) const;
  /// Like `apply` with the tags of the file `from`. Throws what reading it throws; no target has been touched
  /// then.
  std::vector<Result> copy(const std::filesystem::path& from, const std::vector<std::filesystem::path>& to,
                           TagFields fields, bool dryRun) const;
  /// The store's `read`.
  TagSet read(const std::filesystem::path& from) const { return store_.read(from); }

  static std::size_t updatedCount(const std::vector<Result>& results);
  static std::size_t unchangedCount(const std::vector<Result>& results);
  static std::vector<std::pair<std::filesystem::path, std::exception_ptr>> failures(
      const std::vector<Result>& results);

 private:
  Outcome attempt(const TagSet& source, const std::filesystem::path& file, TagFields fields, bool dryRun,
                  platform::ReplacementRun& run) const;
  Outcome outcomeFor(const TagSet& source, const std::filesystem::path& file, TagFields fields, bool dryRun,
                     platform::ReplacementRun& run) const;

  const TagStore& store_;
  Details details_;
};

}  // namespace QuillmarkKit
