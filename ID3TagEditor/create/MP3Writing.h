#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "ID3TagEditor/create/TagCreation.h"
#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Writes a new tag in front of a file's audio.
class Mp3FileWriter {
 public:
  /// Writes the new tag, followed by the bytes of `source` from `audioStart` on, to the file `toPath`, or
  /// replaces the source file if `toPath` is absent. The new file appears in one step, after it is complete.
  /// Creates missing parent folders of `toPath`. Throws `invalidFileFormat` before any file is touched if the
  /// extension of `toPath` is not "mp3", platform::FileConflict and platform::FileError.
  void write(platform::ByteView newId3TagData, platform::FileHandle& source, std::uint64_t audioStart,
             const std::optional<std::filesystem::path>& toPath) const;

 private:
  static void eventuallyCreateIntermediatesDirectoriesFor(const std::filesystem::path& path);
};

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
