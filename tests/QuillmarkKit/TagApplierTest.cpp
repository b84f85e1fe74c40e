#include "QuillmarkKit/transfer/TagApplier.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/transfer/TagClipboard.h"
#include "tests/Files.h"
#include "tests/Samples.h"

namespace tests {

namespace {

/// Implements only the required operations. Throws an int for the album "refused".
class PlainStore : public QuillmarkKit::TagStore {
 public:
  QuillmarkKit::TagSet read(const std::filesystem::path&) const override { return tags_; }
  void write(const QuillmarkKit::TagSet& tags, const std::filesystem::path&) const override {
    if (tags.album == "refused") throw 7;
    tags_ = tags;
  }

 private:
  mutable QuillmarkKit::TagSet tags_;
};

QuillmarkKit::TagSet tagsOf(const char* album) {
  QuillmarkKit::TagSet tags;
  tags.album = album;
  return tags;
}

}  // namespace

static_assert(std::is_constructible_v<QuillmarkKit::TagApplier, const PlainStore&>);
static_assert(!std::is_constructible_v<QuillmarkKit::TagApplier, PlainStore>);

TEST(TagApplierTest, ReturnsAResultForEachFileAndContinues) {
  using namespace QuillmarkKit;
  const TemporaryFolder folder;
  const auto source = folder.file("a.mp3", track(text("TALB", "Mass"), 64));
  const auto target = folder.file("b.mp3", audio());
  const ID3TagEditorStore store(true);
  const TagApplier applier(store);
  const auto results = applier.copy(source, {"no.mp3", source, target}, TagFields::all, false);
  EXPECT_EQ(TagApplier::updatedCount(results), 1U);
  EXPECT_EQ(TagApplier::unchangedCount(results), 1U);
  EXPECT_EQ(store.read(target).album, "Mass");
  const auto failures = TagApplier::failures(results);
  ASSERT_EQ(failures.size(), 1U);
  const std::string unread = "no.mp3 could not be read.";
  EXPECT_EQ(messageOf([&] { std::rethrow_exception(failures[0].second); }), unread);
  EXPECT_EQ(messageOf([&] { applier.copy("no.mp3", {target}, TagFields::all, false); }), unread);
  // The applier still exists, but no hidden folder is left.
  EXPECT_EQ(folder.entryCount(), 2);
}

TEST(TagApplierTest, WorksWithAStoreThatOnlyReadsAndWrites) {
  using namespace QuillmarkKit;
  const PlainStore store;
  const TagApplier applier(store);
  const auto apply = [&](const char* album) {
    return applier.apply(tagsOf(album), {"any.mp3"}, TagFields::all, false)[0].outcome;
  };
  EXPECT_TRUE(std::holds_alternative<TagApplier::Updated>(apply("Mass")));
  EXPECT_TRUE(std::holds_alternative<TagApplier::Unchanged>(apply("Mass")));
  const auto outcome = apply("refused");  // the store throws an int
  const auto* failure = std::get_if<TagApplier::Failed>(&outcome);
  ASSERT_NE(failure, nullptr);
  EXPECT_THROW(std::rethrow_exception(failure->error), int);
  EXPECT_EQ(store.read("any.mp3").album, "Mass");
}

TEST(TagClipboardTest, RefusesTextThatIsNotUTF8) {
  const TemporaryFolder home;
  platform::Pasteboard pasteboard(home.path());
  EXPECT_THROW(QuillmarkKit::TagClipboard::copy(tagsOf("\xFF"), pasteboard),
               QuillmarkKit::TagClipboard::EncodingError);
  EXPECT_EQ(home.entryCount(), 0);
}

}  // namespace tests
