#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Puts a new tag in front of a file's audio.
class Mp3FileWriter {
 public:
  /// Writes the new tag and, behind it, what `source` holds from `audioStart` on, as the file `toPath`, or in
  /// the place of the source when that is absent. The new file takes its place in one step when it is
  /// complete; missing folders above it are created. Throws `invalidFileFormat`, before any file is touched,
  /// when the destination's extension is not "mp3", platform::FileConflict and platform::FileError.
  void write(platform::ByteView newId3TagData, platform::FileHandle& source, std::uint64_t audioStart,
             const std::optional<std::filesystem::path>& toPath) const;

 private:
  static void eventuallyCreateIntermediatesDirectoriesFor(const std::filesystem::path& path);
};

}  // namespace ID3TagEditor
