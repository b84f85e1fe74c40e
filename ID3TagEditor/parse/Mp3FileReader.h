#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "ID3TagEditor/parse/TagHeaderParsing.h"
#include "platform/Bytes.h"
#include "platform/FileHandle.h"

namespace ID3TagEditor {

/// An MP3 file that is open for reading, and how much of its start is its tag.
struct OpenMp3File {
  platform::FileHandle handle;
  /// The bytes of the tag, header included; absent when the file does not start with a tag that the engine
  /// knows.
  std::optional<std::uint64_t> tagLength;
};

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

  /// Opens the file and finds out where its tag ends, from the header alone. Throws as `readID3TagFrom` does.
  OpenMp3File open(const std::filesystem::path& path) const;

 private:
  /// Puts exactly `bytesCount` bytes from the current position on behind `bytes`, or throws `corruptedFile`.
  static void read(std::uint64_t bytesCount, platform::FileHandle& file, platform::Bytes& bytes);
  std::optional<std::uint64_t> tagLengthIn(const platform::Bytes& header) const;

  std::unique_ptr<TagSizeParser> tagSizeParser_;
  std::unique_ptr<TagVersionParser> tagVersionParser_;
  std::unique_ptr<TagPresence> tagPresence_;
};

struct Mp3FileReaderFactory {
  static Mp3FileReader make();
};

}  // namespace ID3TagEditor
