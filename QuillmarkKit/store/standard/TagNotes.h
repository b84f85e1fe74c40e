#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagField.h"
#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/standard/FileTags.h"
#include "platform/base/Bytes.h"

/// Describes parts of a tag for messages of one line.
namespace QuillmarkKit::TagDescriptions {

/// Returns the text in quotation marks, on one line, with " / " between its values and "…" in place of the
/// text after 60 characters.
std::string inQuotes(std::string_view text);

/// Returns the name of the picture type with this number, such as "front cover" for 3.
std::string_view pictureType(std::uint8_t number);
/// Returns a description such as "front cover, JPEG, 48213 bytes".
std::string describe(const ID3v2::Picture& picture);

/// Returns the name of the field that frames with this identifier contain, such as "title", or the identifier
/// itself if they contain none, such as "TSOP".
std::string nameOf(std::string_view identifier);

}  // namespace QuillmarkKit::TagDescriptions

namespace QuillmarkKit {

/// Returns the contents of the tag that belong to no field, as an enumeration such as "2 TXXX, POPM, a
/// picture (back cover), the day and month of its date"; empty if there are none.
std::string beyondFields(const ID3v2::Tag& tag);

}  // namespace QuillmarkKit

/// Describes, for people, the data of one tag that another tag lacks. Differences of form are ignored: 03/12
/// and 3/12, (17) and Rock, blanks at the ends, encodings, unknown languages.
namespace QuillmarkKit::TagLosses {

struct Losses {
  /// Descriptions of missing data, such as "2 comments ("iTunNORM", "iTunSMPB")" and "the title "Kyrie"".
  std::vector<std::string> dropped;
  /// Descriptions of data with another meaning, such as "genre "R&B (Soul)" becomes "(Soul)"".
  std::vector<std::string> changed;
};

Losses between(const ID3v2::Tag& expected, const ID3v2::Tag& found);

/// Returns the data that a write removes from a file although the change does not concern it, as a sentence
/// without its subject; empty if there is none. The change sets the `requested` fields to their values in
/// `wanted`.
std::string ofWriting(FileTags old, const TagSet& wanted, TagFields requested,
                      const platform::SharedBytes& newTag);

/// Returns the selected fields whose values in `read` differ from those in the tags, as a sentence such as
/// "its date 2004-05-06 is not read as a year."; empty if there are none.
std::string ofReading(const FileTags& tags, const TagSet& read, TagFields selected);

}  // namespace QuillmarkKit::TagLosses
