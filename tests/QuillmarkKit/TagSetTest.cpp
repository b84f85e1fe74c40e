#include "QuillmarkKit/model/TagSet.h"

#include <gtest/gtest.h>

#include <tuple>

#include "QuillmarkKit/model/TagSetJSON.h"
#include "platform/base/JSON.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;
namespace JSON = platform::JSON;

TEST(TagFieldTest, NamesMayHaveExtraHyphens) {
  for (const TagField field : allTagFields) {
    EXPECT_EQ(fieldFromCliName(rawValue(field)), field);
    EXPECT_EQ(fieldFromCliName(cliName(field)), field);
  }
  for (const auto name : {"album--artist", "-album-artist", "album-artist-", "album-Artist"})
    EXPECT_EQ(fieldFromCliName(name), TagField::albumArtist) << name;
  for (const auto name : {"ALBUM", "album-ARTIST", "Track-Number", "albumartist", " album", "--", ""})
    EXPECT_EQ(fieldFromCliName(name), std::nullopt) << name;
}

TEST(TagSetTest, ContainsAValueForEachField) {
  const TagSet full = everyField();
  for (const TagField field : allTagFields) {
    const TagSet alone = TagSet().merging(full, {field});
    EXPECT_EQ(alone.populatedFields(), TagFields{field});
    EXPECT_EQ(alone.value(field), full.value(field));
    const TagSet cleared = full.merging(TagSet(), {field});
    EXPECT_EQ(cleared.value(field), std::nullopt);
    EXPECT_EQ(cleared.merging(full, {field}), full);
  }
  const std::string document = JSON::print(encodeTagSet(full), JSON::Layout::compact);
  EXPECT_EQ(decodeTagSet(JSON::parse(document), "tags"), full);
}

TEST(TagSetTest, NormalisingTrimsEveryText) {
  const std::vector<std::pair<std::string, std::optional<std::string>>> rows{
      {"\r\n\t\v\f\u00A0\u2003\u3000Credo\u0085\u2028", "Credo"},
      {"\u200B \0\uFEFF"s, "\u200B \0\uFEFF"s},
      {"Gloria\0\0"s, "Gloria"},
      {"Note \0"s, "Note "},
      {"\0 Note"s, " Note"},
      {"   ", {}},
      {"\0\0"s, {}}};
  for (const auto& [text, normal] : rows) {
    TagSet tags = everyField();
    TagSet expected = tags;
    for (const TagField field : allTagFields) {
      const TextMember member = stringKeyPath(field);
      if (member != nullptr) std::tie(tags.*member, expected.*member) = std::tie(text, normal);
    }
    EXPECT_EQ(tags.normalized(), expected) << testing::PrintToString(text);
  }
}

TEST(ArtworkTest, IsRecognisedByItsSignature) {
  EXPECT_EQ(Artwork::detecting(bytesFrom("\xFF\xD8\xFF")).value().format, Artwork::Format::jpeg);
  for (const auto bytes : {"\x89PNG\r\n\x1A", "\xFF\xD8", " \xFF\xD8\xFF", "GIF89a", ""})
    EXPECT_EQ(Artwork::detecting(bytesFrom(bytes)), std::nullopt) << bytes;
}

}  // namespace tests
