#include "QuillmarkKit/store/MP3TagStore.h"

#include <utility>

#include "QuillmarkKit/store/MP3Check.h"
#include "platform/FileConflict.h"
#include "platform/FileLock.h"
#include "platform/FileReplacement.h"

namespace QuillmarkKit {

using platform::FileConflict;
using platform::FileHandle;

TagSet MP3TagStore::read(const std::filesystem::path& from) const {
  FileHandle file = openMP3(from);
  return tagsIn(file);
}

void MP3TagStore::write(const TagSet& tags, const std::filesystem::path& to) const {
  // Who writes one file does not say when the last one is done.
  struct Tidying {
    const MP3TagStore& store;
    ~Tidying() {
      if (store.lastFolder_) store.lastFolder_->dropPrivateFolder();
    }
  } const tidying{*this};
  rewrite(to, std::nullopt, tags, TagFields::all.without(tags.populatedFields()));
}

void MP3TagStore::replace(TagSet current, const TagSet& tags, TagFields cleared,
                          const std::filesystem::path& in) const {
  rewrite(in, std::move(current), tags, cleared);
}

void MP3TagStore::rewrite(const std::filesystem::path& url, std::optional<TagSet> current, const TagSet& tags,
                          TagFields cleared) const {
  FileHandle file = openMP3(url);
  platform::lockForReplacement(file);
  // Who held the lock before may have put another file in the place of this one; that shows here.
  platform::FileReplacement replacement(file, lastFolder_);
  goOnIn(replacement.folder());
  if (current && tagsIn(file) != *current) throw FileConflict(FileConflict::Case::changed, url);
  Change change{.tags = tags, .differing = {}, .cleared = cleared};
  if (current && tellsLosses()) change.differing = current->differing(tags);
  // A picture in there may keep a whole tag in memory.
  current.reset();
  std::string losses;
  {
    NewTag tag = newTag(change, file);
    losses = std::move(tag.losses);
    replacement.file().write(tag.bytes);
    replacement.file().copy(file, tag.audioStart);
  }
  if (keepsBackup) replacement.keepBackup();
  if (preservesModificationDate) replacement.keepModificationDate();
  replacement.commit();
  tell(url, losses);
}

void MP3TagStore::preview(const TagSet& current, const TagSet& tags, TagFields cleared,
                          const std::filesystem::path& in) const {
  if (!failsInPreview() && !tellsLosses()) return;
  try {
    FileHandle file = openMP3(in);
    tell(in, newTag({.tags = tags, .differing = current.differing(tags), .cleared = cleared}, file).losses);
  } catch (const std::exception&) {
    // What is only looked at to be told changes nothing of the run.
    if (failsInPreview()) throw;
  }
}

void MP3TagStore::synchronise() const {
  synchroniseLastFolder();
  if (failedFolder_) throw platform::FileError(*failedFolder_);
}

void MP3TagStore::goOnIn(const std::shared_ptr<platform::ReplacementFolder>& folder) const {
  if (folder == lastFolder_) return;
  synchroniseLastFolder();
  lastFolder_ = folder;
}

void MP3TagStore::synchroniseLastFolder() const {
  try {
    if (lastFolder_) lastFolder_->synchronise();
  } catch (const platform::FileError& error) {
    // It is about files that are done, and must not be taken for a failure of the next one.
    if (!failedFolder_) failedFolder_ = error;
  }
}

}  // namespace QuillmarkKit
