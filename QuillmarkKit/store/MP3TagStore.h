#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "QuillmarkKit/store/TagStore.h"
#include "platform/Bytes.h"
#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/ReplacementFolder.h"

namespace QuillmarkKit {

/// The one road between MP3 files and the disk; how a tag and a tag set become each other is left to the
/// stores that derive from it. A file is opened once to be read, and once to be written. Errors name the
/// file: TagStoreError (not an MP3), platform::FileConflict, platform::FileError and those of the deriving
/// store.
class MP3TagStore : public TagStore {
 public:
  /// `preservesDate`: whether a write gives the file its earlier modification date back.
  explicit MP3TagStore(bool preservesDate) : preservesModificationDate(preservesDate) {}

  /// The tags, normalised; an MP3 without a tag gives an empty tag set. Nothing of the audio is read.
  TagSet read(const std::filesystem::path& from) const final;
  /// Replaces the file's tag in one step; until then, and after any failure, the file is as it was. The file
  /// may be written to by others at the same time: it fails when they were first.
  void write(const TagSet& tags, const std::filesystem::path& to) const final;
  /// Leaves a hidden folder for the next file of the same folder; it goes with `synchronise`, with a file of
  /// another folder, or with the store.
  void replace(TagSet current, const TagSet& tags, TagFields cleared,
               const std::filesystem::path& in) const final;
  void preview(const TagSet& current, const TagSet& tags, TagFields cleared,
               const std::filesystem::path& in) const final;
  /// Waits until the folder of the last file has reached the disk; throws the first failure to wait for that
  /// or for another one.
  void synchronise() const final;

  bool preservesModificationDate;
  /// Whether a file that is written stays beside the new one as it was, under its name with ".orig" behind
  /// it.
  bool keepsBackup = false;

  /// Is told, in words, what is lost of a file though nobody asked for it.
  using LossListener = std::function<void(const std::filesystem::path& url, const std::string& losses)>;
  /// Without a listener nobody looks for losses.
  void tellLosses(LossListener listener) { lossListener_ = std::move(listener); }

 protected:
  /// A whole tag, and how much of the file it takes the place of.
  struct NewTag {
    platform::SharedBytes bytes;
    std::uint64_t audioStart;
    /// What the file loses by it; looked for only when `tellsLosses`.
    std::string losses = {};
  };
  /// What the open file holds.
  virtual TagSet tagsIn(platform::FileHandle& file) const = 0;
  /// What is to become of a file's tags.
  struct Change {
    const TagSet& tags;
    /// The fields that differ from what the file holds, where that is known and losses are told.
    std::optional<TagFields> differing;
    /// As `replace` has them.
    TagFields cleared;
  };
  /// The tag that makes the change; nothing is written.
  virtual NewTag newTag(const Change& change, platform::FileHandle& file) const = 0;
  /// Whether a dry run fails where making the new tag does.
  virtual bool failsInPreview() const { return false; }

  bool tellsLosses() const { return lossListener_ != nullptr; }
  void tell(const std::filesystem::path& url, const std::string& losses) const {
    if (lossListener_ && !losses.empty()) lossListener_(url, losses);
  }

 private:
  void rewrite(const std::filesystem::path& url, std::optional<TagSet> current, const TagSet& tags,
               TagFields cleared) const;
  void goOnIn(const std::shared_ptr<platform::ReplacementFolder>& folder) const;
  void synchroniseLastFolder() const;

  // Files in a row of one folder share it, open, and wait for it together.
  mutable std::shared_ptr<platform::ReplacementFolder> lastFolder_;
  mutable std::optional<platform::FileError> failedFolder_;
  LossListener lossListener_;
};

}  // namespace QuillmarkKit
