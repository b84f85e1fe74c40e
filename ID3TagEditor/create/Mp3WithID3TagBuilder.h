#pragma once

#include <optional>

#include "ID3TagEditor/create/ID3TagCreator.h"

namespace ID3TagEditor {

/// Replaces the tag of an MP3 file in memory.
class Mp3WithID3TagBuilder {
 public:
  /// The creator must outlive its user.
  explicit Mp3WithID3TagBuilder(const ID3TagCreator& id3TagCreator) : id3TagCreator_(id3TagCreator) {}
  explicit Mp3WithID3TagBuilder(const ID3TagCreator&&) = delete;

  /// The new tag, then what follows the current tag in `mp3`: all of it when there is no current tag, nothing
  /// when `mp3` is empty. Throws as ID3TagCreator does, and `corruptedFile` when `mp3` holds less than the
  /// current tag.
  platform::Bytes build(platform::ByteView mp3, ID3Tag& newId3Tag,
                        const std::optional<ID3Tag>& currentId3Tag) const;

 private:
  const ID3TagCreator& id3TagCreator_;
};

}  // namespace ID3TagEditor
