#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

#include "QuillmarkKit/transfer/TagApplier.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;

namespace {

class StoreInMemory : public TagStore {
 public:
  TagSet read(const std::filesystem::path& from) const override {
    if (!files.contains(from)) throw std::runtime_error("no " + from.native());
    return files[from];
  }
  void write(const TagSet& tags, const std::filesystem::path& to) const override {
    if (to == "locked") throw std::runtime_error("locked is locked");
    files[to] = tags;
  }
  mutable std::map<std::filesystem::path, TagSet> files;
};

}  // namespace

TEST(TagApplierTest, GivesAnOutcomeForEachFileAndGoesOn) {
  StoreInMemory store;
  TagSet album;
  album.album = " Mass ";
  TagSet tidy;
  tidy.album = "Mass";
  store.files = {{"source", album}, {"tidy", tidy}, {"empty", {}}, {"locked", {}}};
  const TagApplier applier(store);
  const auto results = applier.copy("source", {"tidy", "missing", "empty", "locked", "empty", "source"},
                                    {TagField::album}, false);
  std::vector<std::size_t> outcomes;
  for (const auto& result : results) outcomes.push_back(result.outcome.index());
  // Updated, would update, failed, unchanged. What is not normalised as it stands is written.
  EXPECT_EQ(outcomes, (std::vector<std::size_t>{3, 2, 0, 2, 3, 0}));
  EXPECT_EQ(TagApplier::updatedCount(results), 2U);
  EXPECT_EQ(TagApplier::unchangedCount(results), 2U);
  const auto failures = TagApplier::failures(results);
  ASSERT_EQ(failures.size(), 2U);
  EXPECT_EQ(failures[1].first, "locked");
  EXPECT_EQ(messageOf([&] { std::rethrow_exception(failures[1].second); }), "locked is locked");
  EXPECT_EQ(store.files["empty"], tidy);

  EXPECT_EQ(messageOf([&] { applier.copy("missing", {"tidy"}, TagFields::all, false); }), "no missing");
  const auto preview = applier.apply(everyField(), {"tidy"}, TagFields::all, true);
  EXPECT_EQ(std::get<TagApplier::WouldUpdate>(preview[0].outcome).tags, everyField());
  EXPECT_EQ(store.files["tidy"], tidy);
}

}  // namespace tests
