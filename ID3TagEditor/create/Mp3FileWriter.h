#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

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

}  // namespace ID3TagEditor
