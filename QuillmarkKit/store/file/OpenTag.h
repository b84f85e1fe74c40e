#pragma once

#include <cstdint>
#include <string>

#include "QuillmarkKit/model/TagField.h"
#include "QuillmarkKit/model/TagSet.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// The new values of a file's fields.
struct TagChange {
  /// The values of all fields after the change, including those that stay the same.
  TagSet tags;
  /// The fields to change. Those that are absent in `tags` are to be removed.
  TagFields selected;

  TagFields cleared() const { return selected.without(tags.populatedFields()); }
};

/// A whole new tag for a file.
struct NewTag {
  platform::SharedBytes bytes;
  /// The offset of the audio in the old file. The bytes before it are removed.
  std::uint64_t audioStart = 0;
  /// The data that the file loses, as a sentence without its subject; empty if there is none.
  std::string losses = {};
  /// Whether the old artwork stays in the file in addition to the new one.
  bool keepsArtwork = false;
};

/// The tag of an open file, read and written in one of several ways. The file must outlive it.
class OpenTag {
 public:
  virtual ~OpenTag() = default;

  /// Returns the fields, normalised.
  virtual const TagSet& tags() const = 0;
  /// Returns whether the tag contains data of one of the fields that no field value can represent.
  virtual bool holdsMoreThanValues(TagFields fields) const = 0;
  /// Throws if the tag contains data of one of the fields that cannot be written into other files.
  virtual void requireWritableElsewhere(TagFields fields) const = 0;
  /// Returns descriptions of the values that no field can represent.
  virtual UnrepresentableValues unrepresentableValues() const { return {}; }
  struct SourceNotes {
    /// The fields that are not read, or not read as the standards define them.
    std::string losses = {};
    /// The contents of the tag that belong to no field.
    std::string beyondFields = {};
  };
  /// Returns notes about the tag as a source of the fields. Callers use them only if `isLossless`.
  virtual SourceNotes sourceNotes(TagFields) const { return {}; }
  /// Returns whether a new tag keeps all data that the change does not concern, with exceptions reported as
  /// `losses`. Otherwise the caller must compare the old tag with the new one to find losses.
  virtual bool isLossless() const = 0;
  /// Returns the new tag; writes nothing. Throws if the tag cannot be made.
  virtual NewTag changedBy(const TagChange& change) = 0;
};

}  // namespace QuillmarkKit
