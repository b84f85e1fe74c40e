#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "QuillmarkKit/model/TagChange.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// A whole new tag for a file.
struct NewTag {
  platform::SharedBytes bytes;
  /// The offset of the audio in the old file. The bytes before it are removed.
  std::uint64_t audioStart = 0;
  /// The data that the file loses, as a sentence without its subject; empty if there is none.
  std::string losses = {};
  /// Whether the old artwork stays in the file in addition to the new one.
  bool keepsArtwork = false;
  /// The error that the write must throw instead; a dry run ignores it.
  std::exception_ptr failure = nullptr;
};

/// The tag of an open file, read and written in one of several ways. The file must outlive it.
class OpenTag {
 public:
  virtual ~OpenTag() = default;

  /// Returns the fields, normalised.
  virtual const TagSet& tags() const = 0;
  virtual SourceNotes notes(TagFields fields) const = 0;
  /// Returns descriptions of the values that no field can represent.
  virtual UnrepresentableValues unrepresentableValues() const { return {}; }
  /// Throws if the tag contains data of one of the fields that cannot be written into other files.
  virtual void requireWritableElsewhere(TagFields) const {}

  /// Returns whether the change, whose `tags` must be the values of all fields after it, changes the tag.
  virtual bool isChangedBy(const TagChange& change) const = 0;
  /// Returns the new tag for such a change; writes nothing. Determines losses only if `reportsLosses`. Throws
  /// if the tag cannot be made.
  virtual NewTag changedBy(const TagChange& change, bool reportsLosses) const = 0;
};

}  // namespace QuillmarkKit
