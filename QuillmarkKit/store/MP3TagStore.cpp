#include "QuillmarkKit/store/MP3TagStore.h"

#include <optional>
#include <string_view>
#include <utility>

#include "ID3TagEditor/ID3TagEditor.h"
#include "ID3v2/Reading.h"
#include "QuillmarkKit/store/engine/EngineTag.h"
#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/OpenTag.h"
#include "QuillmarkKit/store/file/StoreErrors.h"
#include "QuillmarkKit/store/standard/StandardTag.h"
#include "QuillmarkKit/store/standard/TagNotes.h"
#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/FileReplacement.h"

namespace QuillmarkKit {

using ID3TagEditor::ID3TagEditorError;

namespace {

/// Returns the operation's result. Throws TagFileError, which names the file, in place of an error of the
/// engine.
template <class Operation>
auto naming(MP3File& file, Operation operation) {
  try {
    return operation();
  } catch (const ID3TagEditorError& error) {
    throw TagFileError(error, file.path(), file.handle().size());
  }
}

void requireMP3Name(MP3File& file) {
  naming(file, [&] { ID3TagEditor::requireMp3Extension(file.path()); });
}

/// The tag as the engine reads and writes it, with notes by the standards.
class EngineOpenTag : public OpenTag {
 public:
  EngineOpenTag(const ID3TagEditor::ID3TagEditor& editor, MP3File& file) : file_(file), tag_(editor, file) {}

  const TagSet& tags() const override { return tag_.tags(); }
  SourceNotes notes(TagFields fields) const override {
    const FileTags tags = readTags(file_);
    return TagNotes::ofSource(tags, tag_.tags(), fields);
  }
  bool isChangedBy(const TagChange& change) const override { return change.tags != tags(); }
  NewTag changedBy(const TagChange& change, bool reportsLosses) const override {
    std::optional<FileTags> old;
    if (reportsLosses) old = readTags(file_);
    // Fields that are not selected can differ too: normalising a text a second time can trim more of it.
    const TagFields requested = tags().differing(change.tags).intersection(change.selected);
    try {
      NewTag made = naming(file_, [&] { return tag_.changedBy(change.tags); });
      if (old) made.losses = TagNotes::ofWriting(std::move(*old), change.tags, requested, made.bytes);
      return made;
    } catch (const std::exception&) {
      return {.bytes = {}, .failure = std::current_exception()};
    }
  }

 private:
  MP3File& file_;
  EngineTag tag_;
};

}  // namespace

class MP3TagStore::Edit : public TagEdit {
 public:
  Edit(const MP3TagStore& store, MP3File file, platform::ReplacementRun& run)
      : store_(store), run_(run), file_(std::move(file)), tag_(store.openTag(file_)) {}

  const TagSet& current() const override { return tag_->tags(); }
  bool isNeeded(const TagChange& change) const override { return tag_->isChangedBy(change); }

  Plan plan(const TagChange& change, bool reportsLosses) override {
    planned_ = tag_->changedBy(change, reportsLosses);
    if (planned_.bytes.empty() && !planned_.failure)
      naming(file_, [] { throw ID3TagEditorError(ID3TagEditorError::invalidTagData); });
    return {.losses = reportsLosses ? std::move(planned_.losses) : "", .keepsArtwork = planned_.keepsArtwork};
  }

  std::string commit() override {
    if (planned_.failure) std::rethrow_exception(planned_.failure);
    platform::FileHandle& original = file_.handle();
    run_.lock(original);
    // The previous holder of the lock may have replaced the file; this throws FileConflict if it has.
    platform::FileReplacement replacement(original, run_);
    replacement.file().write(planned_.bytes);
    replacement.file().copy(original, planned_.audioStart);
    if (store_.keepsBackup) replacement.keepBackup();
    if (store_.preservesModificationDate) replacement.keepModificationDate();
    replacement.commit();
    if (!replacement.hasEarlierBackup()) return {};
    return platform::lastPathComponent(file_.path()) + ".orig already exists and is kept as the backup.";
  }

 private:
  const MP3TagStore& store_;
  platform::ReplacementRun& run_;
  MP3File file_;
  std::unique_ptr<OpenTag> tag_;
  NewTag planned_;
};

MP3File MP3TagStore::open(const std::filesystem::path& path, bool requiresName) const {
  try {
    MP3File file(path);
    if (requiresName) requireMP3Name(file);
    return file;
  } catch (const TagStoreError& error) {
    const bool isUnknown = error.value() == TagStoreError::Case::unsupportedFileType && !error.detected();
    if (isUnknown) explainUnsupported(path);
    throw;
  }
}

void MP3TagStore::requireMP3(const std::filesystem::path& file) {
  MP3File opened(file);
  requireMP3Name(opened);
}

TagSet MP3TagStore::read(const std::filesystem::path& from) const {
  MP3File file = open(from);
  return openTag(file)->tags();
}

TagSource MP3TagStore::readWithNotes(const std::filesystem::path& from) const {
  MP3File file = open(from);
  const auto tag = openTag(file);
  return {.tags = tag->tags(), .notes = tag->notes(TagFields::all)};
}

TagSource MP3TagStore::source(const std::filesystem::path& from, TagFields fields, bool hasNotes,
                              bool acceptsUnrepresentable) const {
  MP3File file = open(from);
  const auto tag = openTag(file);
  const TagFields required = acceptsUnrepresentable ? TagFields() : fields;
  tag->requireWritableElsewhere(required);
  return {.tags = accepted(tag->tags(), required),
          .unrepresentable = tag->unrepresentableValues(),
          .notes = hasNotes ? tag->notes(fields) : SourceNotes()};
}

void MP3TagStore::write(const TagSet& tags, const std::filesystem::path& to) const {
  platform::ReplacementRun run;
  // The name is not checked for an empty tag set: frames that belong to no field are written without the
  // engine, which has this requirement.
  Edit edit(*this, open(to, !tags.isEmpty()), run);
  edit.plan({.tags = tags, .selected = TagFields::all}, false);
  edit.commit();
  run.synchronise();
}

std::unique_ptr<TagEdit> MP3TagStore::edit(const std::filesystem::path& file,
                                           platform::ReplacementRun& run) const {
  return std::make_unique<Edit>(*this, open(file), run);
}

ID3TagEditorStore::ID3TagEditorStore(bool preservesDate)
    : MP3TagStore(preservesDate), editor_(std::make_shared<const ID3TagEditor::ID3TagEditor>()) {
}

std::unique_ptr<OpenTag> ID3TagEditorStore::openTag(MP3File& file) const {
  return naming(file, [&] { return std::make_unique<EngineOpenTag>(*editor_, file); });
}

TagSet LosslessTagStore::accepted(const TagSet& tags, TagFields fields) const {
  return acceptedTags(tags, fields);
}

std::unique_ptr<OpenTag> LosslessTagStore::openTag(MP3File& file) const {
  return std::make_unique<StandardTag>(file);
}

void LosslessTagStore::explainUnsupported(const std::filesystem::path& path) const {
  constexpr std::size_t searchedSize = 0x10000;
  const platform::Bytes start = platform::FileHandle::forReading(path).readFirst(searchedSize);
  const platform::ByteView bytes = start;
  for (std::size_t at = 0; (at = platform::charactersOf(bytes).find("ID3", at)) != std::string_view::npos;
       ++at) {
    if (ID3v2::tagLength(bytes.subspan(at)))
      throw LosslessError::about(path, "--lossless cannot keep the data before its ID3v2 tag");
  }
}

TagChange WholeTagStore::changeTo(const std::filesystem::path& source) {
  MP3File file(source);
  TagChange change = StandardTag(file).copied();
  requireMP3Name(file);
  return change;
}

std::unique_ptr<OpenTag> WholeTagStore::openTag(MP3File& file) const {
  return std::make_unique<StandardTag>(file);
}

}  // namespace QuillmarkKit
