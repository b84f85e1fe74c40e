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

namespace QuillmarkKit {

/// Writes fields of one tag set into files. It changes the selected fields and no others, writes only the
/// files that change, and goes on when one fails.
class TagApplier {
 public:
  /// The file was rewritten with these tags.
  struct Updated {
    TagSet tags;
    /// What the file held before, where the applier tells that.
    std::optional<TagSet> before;
  };
  /// In a dry run: the file would have been rewritten with these tags.
  struct WouldUpdate {
    TagSet tags;
    std::optional<TagSet> before;
  };
  /// The file could not be read or written.
  struct Failed {
    std::exception_ptr error;
    /// The error's description.
    std::string message;
  };
  /// The file holds the values already, and was not written.
  struct Unchanged {};
  using Outcome = std::variant<Updated, WouldUpdate, Failed, Unchanged>;

  struct Result {
    std::filesystem::path url;
    Outcome outcome;
  };

  /// The store must outlive the applier. What a changed file held before is kept only for who asks for it.
  explicit TagApplier(const TagStore& store, bool tellsBefore = false)
      : store_(store), tellsBefore_(tellsBefore) {}

  /// What becomes of one file.
  Result applyToOne(const TagSet& source, const std::filesystem::path& to, TagFields fields,
                    bool dryRun) const;
  /// What becomes of each file, one after another, in their order.
  std::vector<Result> apply(const TagSet& source, const std::vector<std::filesystem::path>& to,
                            TagFields fields, bool dryRun) const;
  /// The same with the tags of the file `from`. Throws what reading it throws; then no target has been
  /// touched.
  std::vector<Result> copy(const std::filesystem::path& from, const std::vector<std::filesystem::path>& to,
                           TagFields fields, bool dryRun) const;
  /// The store's own.
  void synchronise() const { store_.synchronise(); }
  /// The store's read.
  TagSet read(const std::filesystem::path& from) const { return store_.read(from); }

  static std::size_t updatedCount(const std::vector<Result>& results);
  static std::size_t unchangedCount(const std::vector<Result>& results);
  static std::vector<std::pair<std::filesystem::path, std::exception_ptr>> failures(
      const std::vector<Result>& results);

 private:
  Outcome attempt(const TagSet& source, const std::filesystem::path& file, TagFields fields,
                  bool dryRun) const;
  Outcome outcomeFor(const TagSet& source, const std::filesystem::path& file, TagFields fields,
                     bool dryRun) const;

  const TagStore& store_;
  bool tellsBefore_;
};

}  // namespace QuillmarkKit
