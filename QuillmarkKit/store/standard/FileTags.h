#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ID3v2/Reading.h"
#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagField.h"
#include "QuillmarkKit/store/file/MP3File.h"

namespace QuillmarkKit {

/// The tags of an open file, read by their standards.
struct FileTags {
  /// The ID3v2 tag or, if there is none, the contents of the ID3v1 tag at the end of the file.
  ID3v2::Tag tag;
  bool hasID3v2Tag = false;
  /// The offset of the audio in the file.
  std::uint64_t audioStart = 0;
  /// The parts of the ID3v2 tag that could not be read.
  std::vector<ID3v2::UnreadablePart> unreadable;
  /// False if there is an ID3v2 tag: the end of the file is then not read.
  bool hasAPETag = false;

  /// Returns whether all unreadable parts of the ID3v2 tag are frames, which can be written as they were.
  bool isWritable() const;
  /// Returns whether a frame of one of the fields cannot be read.
  bool hasUnreadable(TagFields fields) const;
  /// Returns descriptions of the parts that cannot be read and may contain one of the fields.
  std::vector<std::string> unreadablePartsFor(TagFields fields) const;
};

/// Returns the tags of the file. Reads its end only if there is no ID3v2 tag at its start.
FileTags readTags(MP3File& file);

}  // namespace QuillmarkKit
