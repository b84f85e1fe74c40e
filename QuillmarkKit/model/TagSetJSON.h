#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"
#include "platform/base/JSON.h"

namespace QuillmarkKit {

/// A value of a document, and the names of the members that lead to it, outermost first. The operations throw
/// platform::JSON::DecodingError, which names the place, if the value is not of the kind that is asked for.
struct JSONPlace {
  /// The author of a document decides the words of messages and what is accepted. Programs may add members
  /// that this one does not know; mistakes of people are not ignored.
  enum class Author : std::uint8_t { program, person };

  const platform::JSON::Value& value;
  Author author;
  std::vector<std::string_view> names;

  JSONPlace member(std::string_view name, const platform::JSON::Value& of) const;
  JSONPlace requireMember(std::string_view name) const;
  const platform::JSON::Object& object() const;
  const std::string& text() const;
  /// Returns a whole number of at most 64 bits, in whatever notation: 1977, 1977.0 or 1.977e3.
  std::int64_t number() const;
  /// Throws. `mistake` is the predicate of the message, without a full stop.
  [[noreturn]] void refuse(const std::string& mistake) const;

 private:
  [[noreturn]] void refuseKind(const std::string& expected, std::string_view found) const;
};

/// The form of a picture in JSON: its bytes in base64 as "data", or their number as "bytes". Both forms have
/// the member "format".
enum class ArtworkForm : std::uint8_t { data, size };

/// Returns an object with a member for each field that has a value, named by the field's raw value. Texts are
/// strings, numbers are integers, and the artwork is an object.
platform::JSON::Value encodeTagSet(const TagSet& tags, ArtworkForm form = ArtworkForm::data);

/// Returns the tag set in such an object, which a program has written. Ignores nulls and members that are not
/// fields. Does not normalise texts. Throws platform::JSON::DecodingError if a value is not of its field's
/// kind; the message contains the path of the member, which starts with `path`.
TagSet decodeTagSet(const platform::JSON::Value& value, std::string_view path);

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
