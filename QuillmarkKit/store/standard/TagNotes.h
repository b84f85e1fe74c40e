#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "QuillmarkKit/store/standard/FileTags.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagDifferences.h"
#include "platform/base/Bytes.h"

/// Describes tags, fields and differences for people. Nothing decides by these words.
namespace QuillmarkKit::TagNotes {

/// Returns the text in quotation marks, on one line, with " / " between its values and "…" in place of the
/// text after 60 characters.
std::string inQuotes(std::string_view text);
/// Returns such as (front cover, GIF, 48213 bytes), "127.98" in quotation marks, or "that cannot be read".
std::string describe(const LosslessConversion::Unrepresentable& value);
/// Returns the kind of value that the field takes, as in "expected a number".
std::string_view expectedValue(TagField field);

/// Differences in words.
struct Losses {
  /// Descriptions of missing data, such as "2 comments ("iTunNORM", "iTunSMPB")" and "the title "Kyrie"".
  std::vector<std::string> dropped;
  /// Descriptions of data with another meaning, such as "genre "R&B (Soul)" becomes "(Soul)"".
  std::vector<std::string> changed;
};
Losses describe(const std::vector<TagDifferences::Difference>& differences);

/// Returns the data that a write removes from a file although the change does not concern it, as a sentence
/// without its subject; empty if there is none. The change sets the `requested` fields to their values in
/// `wanted`.
std::string ofWriting(FileTags old, const TagSet& wanted, TagFields requested,
                      const platform::SharedBytes& newTag);

/// Returns a sentence about the values of these fields, which no listing shows and which a write removes.
std::string ofRemoving(const ID3v2::Tag& tag, const TagSet& values, TagFields fields);

/// Returns the selected fields whose values in `read` differ from those in the tags, such as "its date
/// 2004-05-06 is not read as a year.", and the contents of the tag that belong to no field, such as "2 TXXX,
/// POPM, a picture (back cover), the day and month of its date".
SourceNotes ofSource(const FileTags& tags, const TagSet& read, TagFields selected);

}  // namespace QuillmarkKit::TagNotes
