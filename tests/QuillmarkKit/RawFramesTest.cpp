#include <gtest/gtest.h>

#include "QuillmarkKit/store/engine/RawFrames.h"
#include "QuillmarkKit/store/file/StoreErrors.h"
#include "tests/Files.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;

TEST(RawFramesTest, AreReadAndWrittenAsAList) {
  const TemporaryFolder folder;
  const std::string carried = frame("PRIV", "x\0\xFF\xE0"s, 0x4003) + frame("TXXX", std::string(200, 't'));
  const auto source = folder.file("source.mp3", track(carried + text("TIT2", "Kyrie")));
  const auto frames = ID3Frames::unmanagedFrames(source);
  EXPECT_EQ(ID3Frames::tagData(frames, -1, source), ID3Frames::tagData(frames, 0, source));
  const auto target = folder.file("target.mp3", track(text("TIT2", "Gloria"), 100));
  ID3Frames::append({}, target);
  EXPECT_EQ(contentsOf(target), track(text("TIT2", "Gloria"), 100));
  ID3Frames::append(frames, target);
  EXPECT_EQ(contentsOf(target), track(text("TIT2", "Gloria") + carried));
  ID3Frames::write(frames, source, target);
  EXPECT_EQ(contentsOf(target), track(carried));
  const auto untagged = folder.file("untagged.mp3", audio());
  EXPECT_EQ(messageOf([&] { ID3Frames::append(frames, untagged); }),
            "untagged.mp3: the ID3 tag could not be read back after writing.");
  EXPECT_EQ(contentsOf(untagged), audio());
  EXPECT_EQ(folder.entryCount(), 3);
}

TEST(RawFramesTest, AreNotReadAfterAnExtendedHeaderThatDoesNotFit) {
  for (const auto& [body, fits] : {std::pair("\0\0\0\x12"s + std::string(18, '\0'), true),
                                   {"\0\0\0\x13"s + std::string(18, '\0'), false},
                                   {"\0\0\0"s, false}}) {
    EXPECT_EQ(ID3Frames::parse(bytesFrom(TagBytes(3, 0x40).raw(body).characters())).has_value(), fits);
  }
}

}  // namespace tests
