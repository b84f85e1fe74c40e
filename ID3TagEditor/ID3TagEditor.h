#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "ID3TagEditor/model/ID3Frames.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "ID3TagEditor/model/TagBuilders.h"
#include "ID3TagEditor/parse/ID3TagContentReader.h"
#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// Reads and writes the ID3v2 tag at the start of an MP3 file. Tags of versions 2.2, 2.3 and 2.4 are read and
/// written; one editor serves any number of files, and keeps nothing of one for the next.
class ID3TagEditor {
 public:
  ID3TagEditor();
  ~ID3TagEditor();

  /// The tag of the file; nothing when it starts with none. Reads the tag and nothing else of the file.
  /// Throws ID3TagEditorError (`invalidFileFormat`, `corruptedFile`) and platform::FileError.
  std::optional<ID3Tag> read(const std::filesystem::path& from) const;
  /// The tag that the bytes start with; nothing when there is none. Throws `corruptedFile` when the bytes are
  /// fewer than the tag's header tells. Pictures keep the bytes alive.
  std::optional<ID3Tag> read(const platform::SharedBytes& mp3) const;
  /// Returns the number of bytes that the open file's tag takes, or nothing if it starts with none. Throws
  /// `corruptedFile` and platform::FileError.
  std::optional<std::uint64_t> tagLength(platform::FileHandle& of) const;

  /// Writes the audio of the file `to` behind the new tag, into the file `andSaveTo` or, when that is absent,
  /// in the place of `to`, which is then either as it was or complete. The audio does not pass through
  /// memory. The tag's size property becomes the new tag's. Throws ID3TagEditorError (any of them) before a
  /// file is touched, platform::FileConflict and platform::FileError.
  void write(ID3Tag& tag, const std::filesystem::path& to,
             const std::optional<std::filesystem::path>& andSaveTo = std::nullopt) const;
  void write(ID3Tag&& tag, const std::filesystem::path& to,
             const std::optional<std::filesystem::path>& andSaveTo = std::nullopt) const {
    write(tag, to, andSaveTo);
  }
  /// The bytes of an MP3 file with the new tag in the place of their own. Throws ID3TagEditorError.
  platform::Bytes write(ID3Tag& tag, const platform::SharedBytes& mp3) const;
  platform::Bytes write(ID3Tag&& tag, const platform::SharedBytes& mp3) const { return write(tag, mp3); }
  /// Returns the bytes of the tag alone, header and padding included, with capacity for `spare` more. Throws
  /// `invalidTagData` and `tagTooBig`.
  platform::Bytes tagData(ID3Tag& tag, std::size_t spare = 0) const;

 private:
  struct Collaborators;
  std::unique_ptr<const Collaborators> collaborators_;
};

}  // namespace ID3TagEditor
