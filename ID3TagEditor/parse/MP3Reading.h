#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "ID3TagEditor/parse/TagHeaders.h"
#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Reads the tag of a file without reading the audio.
class Mp3FileReader {
 public:
  Mp3FileReader(std::unique_ptr<TagSizeParser> tagSizeParser,
                std::unique_ptr<TagVersionParser> tagVersionParser, std::unique_ptr<TagPresence> tagPresence)
      : tagSizeParser_(std::move(tagSizeParser)),
        tagVersionParser_(std::move(tagVersionParser)),
        tagPresence_(std::move(tagPresence)) {}

  /// Returns the file's tag, header included, or nothing if the file does not start with a tag of a known
  /// version. Throws `invalidFileFormat` if the extension is not "mp3", `corruptedFile` if the file is
  /// shorter than a tag header or ends before its tag does, and platform::FileError.
  std::optional<platform::Bytes> readID3TagFrom(const std::filesystem::path& path) const;

  /// Returns the length of the open file's tag in bytes, from the tag's header alone, or nothing if the file
  /// does not start with a tag of a known version. Throws `corruptedFile` and platform::FileError as
  /// `readID3TagFrom` does. Does not check the file's name.
  std::optional<std::uint64_t> tagLength(platform::FileHandle& file) const;

 private:
  std::unique_ptr<TagSizeParser> tagSizeParser_;
  std::unique_ptr<TagVersionParser> tagVersionParser_;
  std::unique_ptr<TagPresence> tagPresence_;
};

struct Mp3FileReaderFactory {
  static Mp3FileReader make();
};

}  // namespace ID3TagEditor
