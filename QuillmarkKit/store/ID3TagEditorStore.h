#pragma once

#include <memory>

#include "QuillmarkKit/store/MP3TagStore.h"

namespace ID3TagEditor {
class ID3TagEditor;
}

namespace QuillmarkKit {

/// Keeps tag sets as ID3v2.3 tags, by way of the engine. Frames that no tag set holds stay in a file through
/// every write, byte for byte. Besides the errors of every such store, there are TagFileError (the engine's)
/// and ID3FrameError, which name the file too.
class ID3TagEditorStore : public MP3TagStore {
 public:
  explicit ID3TagEditorStore(bool preservesDate);
  ~ID3TagEditorStore() override;

  TagSet readSource(const std::filesystem::path& from, TagFields fields) const override;

 protected:
  TagSet tagsIn(platform::FileHandle& file) const override;
  NewTag newTag(const Change& change, platform::FileHandle& file) const override;

 private:
  NewTag newTagWith(const TagSet& tags, platform::FileHandle& file) const;

  std::unique_ptr<const ID3TagEditor::ID3TagEditor> editor_;
};

}  // namespace QuillmarkKit
