#include "QuillmarkKit/transfer/TagApplier.h"

#include <algorithm>

namespace QuillmarkKit {

TagApplier::Outcome TagApplier::outcomeFor(const TagSet& source, const std::filesystem::path& file,
                                           TagFields fields, bool dryRun) const {
  TagSet wanted;
  std::optional<TagSet> before;
  {
    TagSet current = store_.read(file);
    wanted = current.merging(source, fields).normalized();
    if (wanted == current) return Unchanged{};
    if (tellsBefore_) before = std::move(current);
  }
  if (dryRun) return WouldUpdate{std::move(wanted), std::move(before)};
  store_.write(wanted, file);
  return Updated{std::move(wanted), std::move(before)};
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
