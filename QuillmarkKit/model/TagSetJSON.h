#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"
#include "platform/base/JSON.h"

// Functions that return the value of the kind that is expected at a place in a document. They throw
// platform::JSON::DecodingError if the value is of another kind or the member is missing. `path` names the
// place in the message.
namespace QuillmarkKit {

const platform::JSON::Object& requireObject(const platform::JSON::Value& value, std::string_view path);
const platform::JSON::Value& requireMember(const platform::JSON::Object& object, std::string_view path,
                                           std::string_view name);
const std::string& decodeText(const platform::JSON::Value& value, std::string_view path);
/// Returns a whole number of at most 64 bits, in whatever notation: 1977, 1977.0 or 1.977e3.
std::int64_t decodeNumber(const platform::JSON::Value& value, std::string_view path);

/// The form of a picture in JSON: its bytes in base64 as "data", or their number as "bytes". Both forms have
/// the member "format".
enum class ArtworkForm : std::uint8_t { data, size };

/// Returns an object with a member for each field that has a value, named by the field's raw value. Texts are
/// strings, numbers are integers, and the artwork is an object.
platform::JSON::Value encodeTagSet(const TagSet& tags, ArtworkForm form = ArtworkForm::data);

/// Returns the tag set in such an object. Ignores nulls and members that are not fields. Does not normalise
/// texts. Throws platform::JSON::DecodingError if a value is not of its field's kind; the message contains
/// the path of the member, which starts with `path`.
TagSet decodeTagSet(const platform::JSON::Value& value, const std::string& path);

/// The new values of one file's fields.
struct FileChange {
  /// The name of the file; not empty and without U+0000.
  std::string file;
  TagSet tags;
  /// The fields to change. Those that are absent in `tags` are to be removed.
  TagFields selected;
};

/// Returns the changes in a JSON document, sorted by the names of the files. The document is an object with a
/// member for each file, named by the file. Its value is an object with a member for each field to change, in
/// the form of `encodeTagSet`. A null removes the field. A picture with only its size is not changed.
///
/// People edit such documents, so mistakes are not ignored: throws platform::JSON::DecodingError, which names
/// the place, if a member is unknown or repeated or a value is not of its field's kind.
std::vector<FileChange> changesIn(std::string_view document);

}  // namespace QuillmarkKit
