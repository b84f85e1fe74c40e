#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"

namespace QuillmarkKit {

/// The values that one file is to get.
struct FileChange {
  /// The file's name, which is neither empty nor contains a U+0000.
  std::string file;
  TagSet tags;
  /// The fields that change. Those of them that are absent in `tags` are to be removed.
  TagFields selected;
};

/// Reads a document with tags of files, in the form of `encodeTagSet` for each file: an object with a member
/// for each file, whose name is the file's and whose value is an object with a member for each field that
/// changes. A null removes the field, and a picture that is given by its size alone is left as it is. Returns
/// the changes in the order of the files' names.
///
/// People edit such documents, so nothing in one is ignored: throws platform::JSON::DecodingError, which
/// names the place, for a member that is unknown or repeated, and for a value that is not of its field's
/// kind.
std::vector<FileChange> changesIn(std::string_view document);

}  // namespace QuillmarkKit
