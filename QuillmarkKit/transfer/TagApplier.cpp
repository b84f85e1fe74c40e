#include "QuillmarkKit/transfer/TagApplier.h"

#include <algorithm>
#include <utility>

#include "platform/FileError.h"

namespace QuillmarkKit {

TagApplier::Outcome TagApplier::attempt(const TagChange& change, const std::filesystem::path& file,
                                        bool dryRun, platform::ReplacementRun& run) const {
  const auto edit = store_.edit(file, run);
  const TagSet& current = edit->current();
  TagChange whole{.tags = current.merging(change.tags, change.selected),
                  .selected = change.selected,
                  .wholeTag = change.wholeTag,
                  .mayHideAPETag = change.mayHideAPETag};
  whole.tags.normalize();
  if (!edit->isNeeded(whole)) return Unchanged{};
  Change outcome{};
  if (details_.before) outcome.before = current;
  TagEdit::Plan plan = edit->plan(whole, details_.losses);
  outcome.losses = std::move(plan.losses);
  outcome.keepsArtwork = plan.keepsArtwork;
  if (!dryRun) outcome.note = edit->commit();
  outcome.tags = std::move(whole.tags);
  if (dryRun) return WouldUpdate{std::move(outcome)};
  return Updated{std::move(outcome)};
}

TagApplier::Outcome TagApplier::outcomeFor(const TagChange& change, const std::filesystem::path& file,
                                           bool dryRun, platform::ReplacementRun& run) const {
  constexpr int mostAttempts = 3;
  for (int number = 0;;) {
    try {
      return attempt(change, file, dryRun, run);
    } catch (const platform::FileConflict& conflict) {
      // Start again with the file as the other program left it, so that neither change is lost.
      using enum platform::FileConflict::Case;
      // Waiting for another run does not count as an attempt; `run` limits the time.
      if (conflict.value() == changedWhileWaiting) continue;
      if (conflict.value() != changed || ++number == mostAttempts) throw;
    }
  }
}

TagApplier::Result TagApplier::applyToOne(const TagChange& change, const std::filesystem::path& to,
                                          bool dryRun, platform::ReplacementRun& run) const {
  try {
    return {to, outcomeFor(change, to, dryRun, run)};
  } catch (const std::exception& error) {
    return {to, Failed{std::current_exception(), error.what()}};
  } catch (...) {
    return {to, Failed{std::current_exception(),
                       platform::lastPathComponent(to) + " failed with an unknown error."}};
  }
}

std::vector<TagApplier::Result> TagApplier::apply(const TagSet& source,
                                                  const std::vector<std::filesystem::path>& to,
                                                  TagFields fields, bool dryRun) const {
  const TagChange change{.tags = source, .selected = fields};
  platform::ReplacementRun run;
  std::vector<Result> results;
  results.reserve(to.size());
  for (const auto& file : to) results.push_back(applyToOne(change, file, dryRun, run));
  try {
    run.synchronise();
  } catch (const platform::FileError& error) {
    for (Result& result : results) {
      if (result.url == error.file()) result.outcome = Failed{std::current_exception(), error.what()};
    }
  }
  return results;
}

std::vector<TagApplier::Result> TagApplier::copy(const std::filesystem::path& from,
                                                 const std::vector<std::filesystem::path>& to,
                                                 TagFields fields, bool dryRun) const {
  return apply(store_.read(from), to, fields, dryRun);
}

namespace {

template <class Outcome>
std::size_t countOf(const std::vector<TagApplier::Result>& results) {
  return static_cast<std::size_t>(std::ranges::count_if(
      results, [](const auto& result) { return std::holds_alternative<Outcome>(result.outcome); }));
}

}  // namespace

std::size_t TagApplier::updatedCount(const std::vector<Result>& results) {
  return countOf<Updated>(results);
}

std::size_t TagApplier::unchangedCount(const std::vector<Result>& results) {
  return countOf<Unchanged>(results);
}

std::vector<std::pair<std::filesystem::path, std::exception_ptr>> TagApplier::failures(
    const std::vector<Result>& results) {
  std::vector<std::pair<std::filesystem::path, std::exception_ptr>> failed;
  for (const auto& [url, outcome] : results) {
    if (const auto* failure = std::get_if<Failed>(&outcome)) failed.emplace_back(url, failure->error);
  }
  return failed;
}

}  // namespace QuillmarkKit
