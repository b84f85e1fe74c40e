#pragma once

#include <filesystem>
#include <memory>

#include "QuillmarkKit/store/TagStore.h"

namespace ID3TagEditor {
class ID3TagEditor;
}

namespace QuillmarkKit {

class MP3File;
class OpenTag;

/// Reads and writes the tags of MP3 files. Derived classes choose the way of reading a tag. A file is opened
/// once and its tag is read once, even if it is then replaced. Errors name the file: TagStoreError (not an
/// MP3), TagFileError (not named .mp3, or its tag cannot be made), platform::FileConflict,
/// platform::FileError, and the errors of the derived class.
///
/// Several threads can use one store, each with a ReplacementRun of its own, as long as no thread changes the
/// settings.
class MP3TagStore : public TagStore {
 public:
  /// Returns the tags, normalised, or an empty tag set if the MP3 has no tag. Does not read through the
  /// audio.
  TagSet read(const std::filesystem::path& from) const final;
  /// Replaces the file atomically by one with the new tag: it is always the old file or the complete new one.
  /// Throws FileConflict if another program changes the file meanwhile. Leaves no temporary files, and
  /// returns after the change has reached the disk.
  void write(const TagSet& tags, const std::filesystem::path& to) const final;
  std::unique_ptr<TagEdit> edit(const std::filesystem::path& file, platform::ReplacementRun& run) const final;

  /// Returns the tags as `read` does, with notes about all fields.
  TagSource readWithNotes(const std::filesystem::path& from) const;
  /// Returns the tags as a source of `fields`, with notes only if `hasNotes`. Throws if the tag has a value
  /// for one of the fields that the store cannot write into other files, unless `acceptsUnrepresentable`.
  TagSource source(const std::filesystem::path& from, TagFields fields, bool hasNotes,
                   bool acceptsUnrepresentable = false) const;
  /// Returns the tags as the store would read them after writing them. Throws if the store cannot write one
  /// of the fields.
  virtual TagSet accepted(const TagSet& tags, TagFields) const { return tags; }
  /// Throws TagStoreError, TagFileError or platform::FileError if the file cannot be opened, is not an MP3 or
  /// is not named .mp3. Does not read its tag.
  static void requireMP3(const std::filesystem::path& file);

  /// Whether a write preserves the modification date of the file.
  bool preservesModificationDate;
  /// Whether a write keeps the old file, under its name followed by ".orig". An earlier backup is not
  /// replaced.
  bool keepsBackup = false;

 protected:
  explicit MP3TagStore(bool preservesDate) : preservesModificationDate(preservesDate) {}

  /// Returns the tag of the open file, which outlives it.
  virtual std::unique_ptr<OpenTag> openTag(MP3File& file) const = 0;
  /// Called if a file is neither an MP3 nor of another known format. May throw an error with a better
  /// explanation; if it returns, TagStoreError is thrown.
  virtual void explainUnsupported(const std::filesystem::path&) const {}

 private:
  class Edit;

  MP3File open(const std::filesystem::path& path, bool requiresName = true) const;
};

/// Reads and writes tags with the engine; new tags are ID3v2.3. A write keeps the frames of v2.3 and v2.4
/// that belong to no field, byte for byte. Also throws ID3FrameError, which names the file.
class ID3TagEditorStore : public MP3TagStore {
 public:
  explicit ID3TagEditorStore(bool preservesDate);

 protected:
  std::unique_ptr<OpenTag> openTag(MP3File& file) const override;

 private:
  std::shared_ptr<const ID3TagEditor::ID3TagEditor> editor_;
};

/// Reads and writes tags by the ID3v2 standards. A write changes the frames of the fields that differ, and
/// keeps the version of the tag and all other frames byte for byte. Tags of v2.2 and new tags are written as
/// ID3v2.3. If there is no ID3v2 tag, an ID3v1 tag is read. Throws LosslessError if something would be lost.
class LosslessTagStore : public MP3TagStore {
 public:
  explicit LosslessTagStore(bool preservesDate) : MP3TagStore(preservesDate) {}

  TagSet accepted(const TagSet& tags, TagFields fields) const override;

 protected:
  std::unique_ptr<OpenTag> openTag(MP3File& file) const override;
  /// Throws LosslessError if an ID3v2 tag starts in the first 64 KiB of the file, after other data.
  void explainUnsupported(const std::filesystem::path& path) const override;
};

/// Reads tags by the ID3v2 standards and replaces them as a whole.
class WholeTagStore : public MP3TagStore {
 public:
  explicit WholeTagStore(bool preservesDate) : MP3TagStore(preservesDate) {}

  /// Returns the change that gives a file the ID3v2 tag of `source`. Throws the errors of `read`, and
  /// LosslessError if there is no ID3v2 tag or a part of it is damaged.
  static TagChange changeTo(const std::filesystem::path& source);

 protected:
  std::unique_ptr<OpenTag> openTag(MP3File& file) const override;
};

}  // namespace QuillmarkKit
