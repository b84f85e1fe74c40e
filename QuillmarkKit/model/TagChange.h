#pragma once

#include <map>
#include <optional>
#include <string>

#include "QuillmarkKit/model/TagSet.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// A change of one file's tag: new values of some fields or, if `wholeTag` is present, a whole new tag.
struct TagChange {
  TagSet tags;
  /// The fields to change. Those that are absent in `tags` are to be removed.
  TagFields selected;
  /// A whole ID3v2 tag with header. The fields in it must be `tags`, and all fields must be selected.
  std::optional<platform::SharedBytes> wholeTag = {};
  /// Whether a whole tag may be put in front of an APE tag, which it hides from players.
  bool mayHideAPETag = false;

  TagFields cleared() const { return selected.without(tags.populatedFields()); }
};

/// Descriptions of values in a tag that their fields cannot represent, for messages, such as "127.98" in
/// quotes for the BPM. These fields are absent in the tag set.
using UnrepresentableValues = std::map<TagField, std::string>;

/// Notes about a tag as a source of fields.
struct SourceNotes {
  /// The fields that are not read, or not read as the standards define them, as a sentence; empty if there
  /// are none.
  std::string misread = {};
  /// The contents of the tag that belong to no field, as an enumeration; empty if there are none.
  std::string beyondFields = {};
};

/// The tags of a file that are to be written into other files.
struct TagSource {
  TagSet tags;
  /// The values that cannot be written into other files.
  UnrepresentableValues unrepresentable = {};
  SourceNotes notes = {};
};

}  // namespace QuillmarkKit
