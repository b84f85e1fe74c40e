#pragma once

#include <memory>

#include "QuillmarkKit/store/TagStore.h"

namespace ID3TagEditor {
class ID3TagEditor;
}

namespace QuillmarkKit {

/// Keeps tag sets as the ID3v2 tags of MP3 files. Frames that no tag set holds stay in a file through every
/// write, byte for byte. Errors are TagStoreError (not an MP3), TagFileError (the engine's), ID3FrameError
/// and platform::FileError, and each of them names the file.
class ID3TagEditorStore : public TagStore {
 public:
  explicit ID3TagEditorStore(bool preservesDate);
  ~ID3TagEditorStore() override;

  /// The tags, normalised; an MP3 without a tag gives an empty tag set. Nothing of the audio is read.
  TagSet read(const std::filesystem::path& from) const override;
  /// Replaces the file's tag by an ID3v2.3 tag in one step; until then, and after any failure, the file is as
  /// it was.
  void write(const TagSet& tags, const std::filesystem::path& to) const override;

 private:
  std::unique_ptr<const ID3TagEditor::ID3TagEditor> editor_;

 public:
  /// Whether a write gives the file its earlier modification date back.
  bool preservesModificationDate;
};

}  // namespace QuillmarkKit
