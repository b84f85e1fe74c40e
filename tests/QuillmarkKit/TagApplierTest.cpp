#include "QuillmarkKit/transfer/TagApplier.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/transfer/TagClipboard.h"
#include "tests/Files.h"
#include "tests/Samples.h"

namespace tests {

namespace {

QuillmarkKit::TagSet tagsOf(const char* album) {
  QuillmarkKit::TagSet tags;
  tags.album = album;
  return tags;
}

}  // namespace

static_assert(std::is_constructible_v<QuillmarkKit::TagApplier, const QuillmarkKit::ID3TagEditorStore&>);
static_assert(!std::is_constructible_v<QuillmarkKit::TagApplier, QuillmarkKit::ID3TagEditorStore>);

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

TEST(TagClipboardTest, RefusesTextThatIsNotUTF8) {
  const TemporaryFolder home;
  platform::Pasteboard pasteboard(home.path());
  EXPECT_THROW(QuillmarkKit::TagClipboard::copy(tagsOf("\xFF"), pasteboard),
               QuillmarkKit::TagClipboard::EncodingError);
  EXPECT_EQ(home.entryCount(), 0);
}

}  // namespace tests
