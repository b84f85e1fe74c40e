#pragma once

#include <cstddef>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/TagStore.h"
#include "platform/ReplacementRun.h"

namespace QuillmarkKit::QuillmarkNotification {

/// The name of the notification that programs can post after they have changed the tags of files. This
/// library does not post it.
inline constexpr std::string_view filesChanged = "org.quillmark.filesChanged";

}  // namespace QuillmarkKit::QuillmarkNotification

namespace QuillmarkKit {

/// Writes selected fields of a tag set into files. Leaves other fields, and files that have the values
/// already, unchanged. Continues after a file that fails. A selected field that is absent in the tag set is
/// removed from the files; for the artwork, this removes all pictures.
class TagApplier {
 public:
  /// The change of one file. `before` and `losses` are empty unless the applier was constructed to report
  /// them.
  struct Change {
    TagSet tags;
    /// The file's tags before the change.
    std::optional<TagSet> before;
    /// The data that the file loses although the change does not concern it, as a sentence without its
    /// subject; empty if there is none.
    std::string losses;
    /// Whether the old artwork stays in the file in addition to the new one.
    bool keepsArtwork;
    /// The note that TagEdit::commit returned; empty if there is none.
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
  /// The file has the values already and was not written.
  struct Unchanged {};
  using Outcome = std::variant<Updated, WouldUpdate, Failed, Unchanged>;

  struct Result {
    std::filesystem::path url;
    Outcome outcome;
  };

  /// The details to report in outcomes besides the tags.
  struct Details {
    bool before;
    bool losses;
  };

  /// The store must outlive the applier.
  explicit TagApplier(const TagStore& store) : TagApplier(store, {.before = false, .losses = false}) {}
  TagApplier(const TagStore& store, Details details) : store_(store), details_(details) {}
  explicit TagApplier(const TagStore&& store) = delete;
  TagApplier(const TagStore&& store, Details details) = delete;

  /// Changes one file: its selected fields get the values in `change`, or it gets the whole tag. Consecutive
  /// replacements share resources through `run`; the caller must synchronise it after the last file.
  Result applyToOne(const TagChange& change, const std::filesystem::path& to, bool dryRun,
                    platform::ReplacementRun& run) const;
  /// Writes the fields into one file after another. Returns the results in the order of the files, after all
  /// changes have reached the disk. A file whose folder could not be synchronised has failed.
  std::vector<Result> apply(const TagSet& source, const std::vector<std::filesystem::path>& to,
                            TagFields fields, bool dryRun) const;
  /// Like `apply`, with the tags of the file `from`. Throws if they cannot be read; all targets are then
  /// unchanged.
  std::vector<Result> copy(const std::filesystem::path& from, const std::vector<std::filesystem::path>& to,
                           TagFields fields, bool dryRun) const;
  TagSet read(const std::filesystem::path& from) const { return store_.read(from); }

  static std::size_t updatedCount(const std::vector<Result>& results);
  static std::size_t unchangedCount(const std::vector<Result>& results);
  static std::vector<std::pair<std::filesystem::path, std::exception_ptr>> failures(
      const std::vector<Result>& results);

 private:
  Outcome attempt(const TagChange& change, const std::filesystem::path& file, bool dryRun,
                  platform::ReplacementRun& run) const;
  Outcome outcomeFor(const TagChange& change, const std::filesystem::path& file, bool dryRun,
                     platform::ReplacementRun& run) const;

  const TagStore& store_;
  Details details_;
};

}  // namespace QuillmarkKit
