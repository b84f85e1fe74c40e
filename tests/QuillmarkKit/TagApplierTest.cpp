#include "QuillmarkKit/transfer/TagApplier.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;

namespace {

/// Tag sets by file name. A file that it does not hold cannot be read, and one called "locked" cannot be
/// written.
class MemoryStore : public TagStore {
 public:
  explicit MemoryStore(std::map<std::filesystem::path, TagSet> files) : files_(std::move(files)) {}

  TagSet read(const std::filesystem::path& from) const override {
    if (!files_.contains(from)) throw std::runtime_error("no " + from.native());
    return files_.at(from);
  }
  void write(const TagSet& tags, const std::filesystem::path& to) const override {
    if (to == "locked") throw std::runtime_error("locked");
    files_[to] = tags;
    written.push_back(to);
  }

  mutable std::vector<std::filesystem::path> written;

 private:
  mutable std::map<std::filesystem::path, TagSet> files_;
};

TagSet album(std::string_view title, std::optional<std::string> name, std::optional<std::string> genre = {}) {
  TagSet tags;
  tags.title = title;
  tags.album = std::move(name);
  tags.genre = std::move(genre);
  return tags;
}

using Paths = std::vector<std::filesystem::path>;
using Lines = std::vector<std::string>;
constexpr TagFields selection{TagField::album, TagField::genre};

/// A line for each result that tells what became of the file, with its new tags or its error.
Lines linesOf(const std::vector<TagApplier::Result>& results) {
  Lines lines;
  for (const auto& [url, outcome] : results) {
    std::string line = url.native() + " unchanged";
    if (const auto* updated = std::get_if<TagApplier::Updated>(&outcome)) {
      line = url.native() + " updated: " + updated->tags.summary();
    } else if (const auto* would = std::get_if<TagApplier::WouldUpdate>(&outcome)) {
      line = url.native() + " would: " + would->tags.summary();
    } else if (const auto* failed = std::get_if<TagApplier::Failed>(&outcome)) {
      line = url.native() + " failed: " + failed->message;
    }
    lines.push_back(line);
  }
  return lines;
}

}  // namespace

TEST(TagApplierTest, ChangesTheSelectedFieldsOfEachFile) {
  const MemoryStore store(
      {{"a", album("A", "Old", "Pop")}, {"b", album("B", "Mass")}, {"locked", album("L", {})}});
  const auto results = TagApplier(store).apply(album("S", " Mass\n"),
                                               Paths{"a", "missing", "b", "locked", "a"}, selection, false);
  EXPECT_EQ(linesOf(results), Lines({"a updated: Title: A\nAlbum: Mass", "missing failed: no missing",
                                     "b unchanged", "locked failed: locked", "a unchanged"}));
  EXPECT_EQ(store.written, Paths{"a"});
  EXPECT_EQ(store.read("a"), album("A", "Mass"));
  EXPECT_EQ(TagApplier::updatedCount(results), 1U);
  EXPECT_EQ(TagApplier::unchangedCount(results), 2U);
  const auto failures = TagApplier::failures(results);
  ASSERT_EQ(failures.size(), 2U);
  EXPECT_EQ(failures[0].first, "missing");
  EXPECT_EQ(messageOf([&] { std::rethrow_exception(failures[1].second); }), "locked");
}

TEST(TagApplierTest, WritesNothingInADryRunOrWithoutASource) {
  const MemoryStore store({{"a", album("A", "Old")}, {"locked", album("L", {})}, {"c", album("C", "Mass")}});
  const TagApplier applier(store);
  EXPECT_EQ(linesOf(applier.copy("c", {"a", "locked", "c"}, selection, true)),
            Lines({"a would: Title: A\nAlbum: Mass", "locked would: Title: L\nAlbum: Mass", "c unchanged"}));
  EXPECT_EQ(messageOf([&] { applier.copy("missing", {"a"}, selection, false); }), "no missing");
  EXPECT_TRUE(store.written.empty());
}

TEST(TagApplierTest, WithoutFieldsOnlyNormalises) {
  const MemoryStore store({{"a", album("A", "Old")}, {"blank", album(" B ", "Old")}});
  EXPECT_EQ(linesOf(TagApplier(store).apply(everyField(), Paths{"a", "blank"}, {}, false)),
            Lines({"a unchanged", "blank updated: Title: B\nAlbum: Old"}));
}

}  // namespace tests
