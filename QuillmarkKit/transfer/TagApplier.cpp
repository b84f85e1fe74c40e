#include "QuillmarkKit/transfer/TagApplier.h"

#include <algorithm>

#include "platform/FileConflict.h"

namespace QuillmarkKit {

TagApplier::Outcome TagApplier::attempt(const TagSet& source, const std::filesystem::path& file,
                                        TagFields fields, bool dryRun) const {
  TagSet current = store_.read(file);
  TagSet wanted = current.merging(source, fields).normalized();
  const TagFields cleared = fields.without(wanted.populatedFields());
  if (wanted == current && !store_.saysMore(cleared, file)) return Unchanged{};
  auto before = tellsBefore_ ? std::optional(current) : std::nullopt;
  if (dryRun) {
    store_.preview(current, wanted, cleared, file);
    return WouldUpdate{std::move(wanted), std::move(before)};
  }
  store_.replace(std::move(current), wanted, cleared, file);
  return Updated{std::move(wanted), std::move(before)};
}

TagApplier::Outcome TagApplier::outcomeFor(const TagSet& source, const std::filesystem::path& file,
                                           TagFields fields, bool dryRun) const {
  constexpr int mostAttempts = 3;
  for (int number = 1;; ++number) {
    try {
      return attempt(source, file, fields, dryRun);
    } catch (const platform::FileConflict& conflict) {
      // What another program has made of the file is merged with afresh, so that neither change is lost.
      if (conflict.value() != platform::FileConflict::Case::changed || number == mostAttempts) throw;
    }
  }
}

TagApplier::Result TagApplier::applyToOne(const TagSet& source, const std::filesystem::path& to,
                                          TagFields fields, bool dryRun) const {
  try {
    return {to, outcomeFor(source, to, fields, dryRun)};
  } catch (const std::exception& error) {
    return {to, Failed{std::current_exception(), error.what()}};
  }
}

std::vector<TagApplier::Result> TagApplier::apply(const TagSet& source,
                                                  const std::vector<std::filesystem::path>& to,
                                                  TagFields fields, bool dryRun) const {
  std::vector<Result> results;
  results.reserve(to.size());
  for (const auto& file : to) results.push_back(applyToOne(source, file, fields, dryRun));
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
