#pragma once

#include <optional>

#include "ID3TagEditor/create/ID3TagCreator.h"

namespace ID3TagEditor {

/// Replaces the tag of an MP3 file in memory.
class Mp3WithID3TagBuilder {
 public:
  /// The creator must outlive this object.
  explicit Mp3WithID3TagBuilder(const ID3TagCreator& id3TagCreator) : id3TagCreator_(id3TagCreator) {}
  explicit Mp3WithID3TagBuilder(const ID3TagCreator&&) = delete;

  /// Returns the new tag, followed by the bytes of `mp3` after its current tag: all of them if there is no
  /// current tag, none if `mp3` is empty. Throws `invalidTagData` and `tagTooBig` as ID3TagCreator does, and
  /// `corruptedFile` if `mp3` ends before the current tag does.
  platform::Bytes build(platform::ByteView mp3, ID3Tag& newId3Tag,
                        const std::optional<ID3Tag>& currentId3Tag) const;

 private:
  const ID3TagCreator& id3TagCreator_;
};

}  // namespace ID3TagEditor
