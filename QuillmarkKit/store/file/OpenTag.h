#pragma once

#include <cstdint>
#include <string>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/model/UncarriedValues.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// The values that a file is to get.
struct TagChange {
  /// All of the file's fields as they are to be, those that stay included.
  TagSet tags;
  /// The fields that were asked to change. Those of them that are absent in `tags` are to be removed.
  TagFields selected;

  TagFields cleared() const { return selected.without(tags.populatedFields()); }
};

/// A whole new tag for a file.
struct NewTag {
  platform::SharedBytes bytes;
  /// Where the audio starts in the old file; all bytes before that go.
  std::uint64_t audioStart = 0;
  /// What the file loses by the new tag, as a sentence without its subject; empty if nothing.
  std::string losses = {};
  /// Whether the artwork that the file had stays in it, although it got another.
  bool keepsArtwork = false;
};

/// The tag of an open file, as one way to read and write tags understands it. The file must outlive it.
class OpenTag {
 public:
  virtual ~OpenTag() = default;

  /// The fields, normalised.
  virtual const TagSet& tags() const = 0;
  /// Returns whether the tag contains something about one of the fields that no field value can express.
  virtual bool holdsMoreThanValues(TagFields fields) const = 0;
  /// Throws if the tag contains something about one of the fields that cannot be written into other files.
  virtual void requireCarriable(TagFields fields) const = 0;
  /// Returns the values of fields that no tag set can hold, in words.
  virtual UncarriedValues uncarried() const { return {}; }
  struct SourceNotes {
    /// What of the fields is read otherwise than it was meant, or is not read.
    std::string losses = {};
    /// What the tag contains that no field holds.
    std::string beyondFields = {};
  };
  /// Returns what there is to say about the tag as a source of the fields, if `isLossless`.
  virtual SourceNotes sourceNotes(TagFields) const { return {}; }
  /// Returns whether a new tag keeps everything that no change asks for, and names the exceptions in its
  /// `losses`. Otherwise the caller has to compare the old tag with the new one to know what is lost.
  virtual bool isLossless() const = 0;
  /// Returns the tag that makes the change; writes nothing. Throws if the tag cannot be made.
  virtual NewTag changedBy(const TagChange& change) = 0;
};

}  // namespace QuillmarkKit
