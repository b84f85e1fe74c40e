#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ID3v2/Reading.h"
#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagField.h"
#include "QuillmarkKit/store/file/MP3File.h"

namespace QuillmarkKit {

/// What an open file holds in tags, by their standards.
struct FileTags {
  /// The ID3v2 tag; where there is none, what the ID3v1 tag at the end says.
  ID3v2::Tag tag;
  bool hasID3v2Tag = false;
  /// Where the audio starts.
  std::uint64_t audioStart = 0;
  /// The parts of the ID3v2 tag that could not be read.
  std::vector<ID3v2::UnreadablePart> unreadable;
  /// Looked for only where there is no ID3v2 tag.
  bool hasAPETag = false;

  /// Returns whether everything in the ID3v2 tag is a frame, which can be written as it was.
  bool isWritable() const;
  /// Whether there is a frame of one of the fields that cannot be read.
  bool hasUnreadable(TagFields fields) const;
  /// What cannot be read though it may hold one of the fields, named for people; empty where there is
  /// nothing.
  std::string unreadableFor(TagFields fields) const;
  /// Returns all such parts.
  std::vector<std::string> unreadablePartsFor(TagFields fields) const;
};

/// Reads the tags. Reads the end of the file only if there is no tag at its start.
FileTags readTags(MP3File& file);

}  // namespace QuillmarkKit
