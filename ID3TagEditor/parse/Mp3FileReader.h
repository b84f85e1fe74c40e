#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "ID3TagEditor/parse/TagHeaderParsing.h"
#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Fetches a file's tag and nothing of its audio.
class Mp3FileReader {
 public:
  Mp3FileReader(std::unique_ptr<TagSizeParser> tagSizeParser,
                std::unique_ptr<TagVersionParser> tagVersionParser, std::unique_ptr<TagPresence> tagPresence)
      : tagSizeParser_(std::move(tagSizeParser)),
        tagVersionParser_(std::move(tagVersionParser)),
        tagPresence_(std::move(tagPresence)) {}

  /// The file's tag, header included; nothing when the file starts with none that the engine knows. Throws
  /// `invalidFileFormat` when the extension is not "mp3", `corruptedFile` when the file is shorter than a tag
  /// header or than its tag, and platform::FileError.
  std::optional<platform::Bytes> readID3TagFrom(const std::filesystem::path& path) const;

  /// Returns the number of bytes that the open file's tag takes, read from its header alone, or nothing if
  /// the file starts with no tag that the engine knows. Throws `corruptedFile` and platform::FileError as
  /// `readID3TagFrom` does; the file's name is not checked.
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
