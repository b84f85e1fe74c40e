#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "ID3TagEditor/model/TagBuilders.h"
#include "ID3TagEditor/parse/ContentReader.h"
#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Reads and writes the ID3v2 tag at the start of an MP3 file, in versions 2.2, 2.3 and 2.4. An editor has no
/// state: it can be used for any number of files.
class ID3TagEditor {
 public:
  ID3TagEditor();
  ~ID3TagEditor();

  /// Returns the tag of the file, or nothing if the file does not start with one. Reads the start of the file
  /// and its tag, but not the audio. Throws ID3TagEditorError (`invalidFileFormat`, `corruptedFile`) and
  /// platform::FileError.
  std::optional<ID3Tag> read(const std::filesystem::path& from) const;
  /// Returns the tag at the start of the bytes, or nothing if there is none. Throws `corruptedFile` if the
  /// bytes end before the tag does. The pictures of the tag keep the bytes alive.
  std::optional<ID3Tag> read(const platform::SharedBytes& mp3) const;
  /// Returns the length of the open file's tag in bytes, header included, or nothing if the file does not
  /// start with a tag. Throws `corruptedFile` and platform::FileError.
  std::optional<std::uint64_t> tagLength(platform::FileHandle& of) const;

  /// Writes the new tag, followed by the audio of the file `to`, into the file `andSaveTo`. If that is
  /// absent, replaces `to`, which then has either its old contents or the complete new ones. The audio does
  /// not pass through memory. Sets the size in the tag's properties. Throws ID3TagEditorError (all cases)
  /// before a file is touched, platform::FileConflict and platform::FileError.
  void write(ID3Tag& tag, const std::filesystem::path& to,
             const std::optional<std::filesystem::path>& andSaveTo = std::nullopt) const;
  void write(ID3Tag&& tag, const std::filesystem::path& to,
             const std::optional<std::filesystem::path>& andSaveTo = std::nullopt) const {
    write(tag, to, andSaveTo);
  }
  /// Returns the bytes of an MP3 file with its tag replaced by `tag`. Throws ID3TagEditorError.
  platform::Bytes write(ID3Tag& tag, const platform::SharedBytes& mp3) const;
  platform::Bytes write(ID3Tag&& tag, const platform::SharedBytes& mp3) const { return write(tag, mp3); }
  /// Returns the bytes of the tag alone, header and padding included. The result has capacity for `spare`
  /// more bytes. Throws `invalidTagData` and `tagTooBig`.
  platform::Bytes tagData(ID3Tag& tag, std::size_t spare = 0) const;

 private:
  struct Collaborators;
  std::unique_ptr<const Collaborators> collaborators_;
};

}  // namespace ID3TagEditor
