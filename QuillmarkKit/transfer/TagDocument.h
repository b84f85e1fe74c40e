#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"

namespace QuillmarkKit {

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
