#pragma once

#include <string>
#include <vector>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/standard/FileTags.h"
#include "platform/base/Bytes.h"

/// What one tag says and another does not, in words for people. Differences of form alone do not count: 03/12
/// and 3/12, (17) and Rock, blanks at the ends, encodings, a language that is not named.
namespace QuillmarkKit::TagLosses {

struct Losses {
  /// What is gone, such as "2 comments ("iTunNORM", "iTunSMPB")" and "the title "Kyrie"".
  std::vector<std::string> dropped;
  /// What says something else now, such as "genre "R&B (Soul)" becomes "(Soul)"".
  std::vector<std::string> changed;
};

Losses between(const ID3v2::Tag& expected, const ID3v2::Tag& found);

/// What a write takes from a file that it was not asked to take, as a sentence without its subject; empty
/// when nothing. It was asked to give the `asked` fields the values that they have in `wanted`.
std::string ofWriting(FileTags old, const TagSet& wanted, TagFields asked,
                      const platform::SharedBytes& newTag);

/// What of the selected fields the tags say otherwise than the tag set that was read from them, as such a
/// sentence: "its date 2004-05-06 is not read as a year."
std::string ofReading(const FileTags& tags, const TagSet& read, TagFields selected);

}  // namespace QuillmarkKit::TagLosses
