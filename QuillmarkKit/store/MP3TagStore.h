#pragma once

#include <functional>
#include <memory>
#include <string>

#include "QuillmarkKit/store/TagStore.h"
#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"

namespace QuillmarkKit {

/// Keeps tag sets in MP3 files, whose tags it reads and writes in one of several ways. A file is opened once,
/// and its tag is read once, for its whole way from the first look to the replacement. Errors name the file:
/// TagStoreError (not an MP3), TagFileError (not named .mp3, or its tag cannot be made),
/// platform::FileConflict, platform::FileError, and those of the way in which the tag is read.
///
/// Operations change nothing in the store, so several threads can use one store, each with a ReplacementRun
/// of its own, as long as no thread changes the settings.
class MP3TagStore : public TagStore {
 public:
  /// Returns the tags, normalised; an empty tag set for an MP3 without a tag. Reads nothing of the audio.
  TagSet read(const std::filesystem::path& from) const final;
  /// Replaces the file's tag in one step; after any failure the file is as it was. Throws FileConflict if
  /// another program changes the file meanwhile. Leaves nothing else in the folder and returns after the
  /// change has reached the disk.
  void write(const TagSet& tags, const std::filesystem::path& to) const final;
  std::unique_ptr<TagEdit> edit(const std::filesystem::path& file, platform::ReplacementRun& run) const final;
  Source source(const std::filesystem::path& from, TagFields fields, bool reportsLosses,
                bool acceptsUncarried) const final;

  /// Returns the tags as `read` does, with `losses` and `beyondFields` of all fields.
  Source readWithNotes(const std::filesystem::path& from) const;
  /// Throws what `read` throws about the file if it is missing or is not an MP3; reads no tag.
  static void requireMP3(const std::filesystem::path& file);

  /// Whether a write gives the file its earlier modification date back.
  bool preservesModificationDate;
  /// Whether a file that is written stays as it was beside the new one, under its name followed by ".orig".
  bool keepsBackup = false;

 protected:
  using TagOpener = std::function<std::unique_ptr<OpenTag>(MP3File& file)>;
  MP3TagStore(TagOpener openTag, bool preservesDate)
      : preservesModificationDate(preservesDate), openTag_(std::move(openTag)) {}

  /// Called for a file that is not an MP3 nor of another known format, to throw an error that says more.
  virtual void explainUnsupported(const std::filesystem::path&) const {}

 private:
  class Edit;

  MP3File open(const std::filesystem::path& path) const;
  static void addNotes(Source& source, MP3File& file, const OpenTag& tag, TagFields fields);

  TagOpener openTag_;
};

}  // namespace QuillmarkKit
