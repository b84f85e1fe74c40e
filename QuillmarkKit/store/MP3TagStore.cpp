#include "QuillmarkKit/store/MP3TagStore.h"

#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include "ID3TagEditor/ID3TagEditor.h"
#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "ID3v2/Reading.h"
#include "QuillmarkKit/store/engine/EngineTag.h"
#include "QuillmarkKit/store/file/StoreErrors.h"
#include "QuillmarkKit/store/standard/FileTags.h"
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

}  // namespace

class MP3TagStore::Edit : public TagEdit {
 public:
  Edit(const MP3TagStore& store, MP3File file, platform::ReplacementRun& run)
      : store_(store),
        run_(run),
        file_(std::move(file)),
        tag_(naming(file_, [&] { return store.openTag_(file_); })) {}

  const TagSet& current() const override { return tag_->tags(); }

  bool isNeeded(const TagChange& change) const override {
    return change.tags != current() || tag_->holdsMoreThanValues(change.cleared());
  }

  Plan plan(const TagChange& change, bool reportsLosses) override {
    try {
      planned_ = naming(file_, [&] { return newTag(change, reportsLosses); });
    } catch (const std::exception&) {
      if (tag_->isLossless()) throw;
      failure_ = std::current_exception();
    }
    return {.losses = reportsLosses ? std::move(planned_.losses) : "", .keepsArtwork = planned_.keepsArtwork};
  }

  std::string commit() override {
    if (failure_) std::rethrow_exception(failure_);
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
  NewTag newTag(const TagChange& change, bool reportsLosses) {
    std::optional<FileTags> old;
    if (reportsLosses && !tag_->isLossless()) old = readTags(file_);
    // Fields that are not selected can differ too: normalising a text a second time can trim more of it.
    const TagFields requested = current().differing(change.tags).intersection(change.selected);
    NewTag made = tag_->changedBy(change);
    if (made.bytes.empty()) throw ID3TagEditorError(ID3TagEditorError::invalidTagData);
    if (old) made.losses = TagLosses::ofWriting(std::move(*old), change.tags, requested, made.bytes);
    return made;
  }

  const MP3TagStore& store_;
  platform::ReplacementRun& run_;
  MP3File file_;
  std::unique_ptr<OpenTag> tag_;
  NewTag planned_;
  std::exception_ptr failure_;
};

MP3File MP3TagStore::open(const std::filesystem::path& path) const {
  try {
    return MP3File(path);
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
  requireMP3Name(file);
  return naming(file, [&] { return openTag_(file)->tags(); });
}

TagStore::Source MP3TagStore::readWithNotes(const std::filesystem::path& from) const {
  MP3File file = open(from);
  requireMP3Name(file);
  const auto tag = naming(file, [&] { return openTag_(file); });
  Source source{.tags = tag->tags()};
  addNotes(source, file, *tag, TagFields::all);
  return source;
}

void MP3TagStore::addNotes(Source& source, MP3File& file, const OpenTag& tag, TagFields fields) {
  OpenTag::SourceNotes notes = tag.sourceNotes(fields);
  if (!tag.isLossless()) {
    const FileTags fileTags = readTags(file);
    notes = {.losses = TagLosses::ofReading(fileTags, source.tags, fields),
             .beyondFields = QuillmarkKit::beyondFields(fileTags.tag)};
  }
  source.losses = std::move(notes.losses);
  source.beyondFields = std::move(notes.beyondFields);
}

void MP3TagStore::write(const TagSet& tags, const std::filesystem::path& to) const {
  platform::ReplacementRun run;
  MP3File file = open(to);
  // The name is not checked for an empty tag set: frames that belong to no field are written without the
  // engine, which has this requirement.
  if (!tags.isEmpty()) requireMP3Name(file);
  Edit edit(*this, std::move(file), run);
  edit.plan({.tags = tags, .selected = TagFields::all}, false);
  edit.commit();
  run.synchronise();
}

std::unique_ptr<TagEdit> MP3TagStore::edit(const std::filesystem::path& file,
                                           platform::ReplacementRun& run) const {
  MP3File opened = open(file);
  requireMP3Name(opened);
  return std::make_unique<Edit>(*this, std::move(opened), run);
}

TagStore::Source MP3TagStore::source(const std::filesystem::path& from, TagFields fields, bool reportsLosses,
                                     bool acceptsUnrepresentable) const {
  MP3File file = open(from);
  requireMP3Name(file);
  const auto tag = naming(file, [&] { return openTag_(file); });
  tag->requireWritableElsewhere(acceptsUnrepresentable ? TagFields() : fields);
  Source source{.tags = accepted(tag->tags(), acceptsUnrepresentable ? TagFields() : fields),
                .unrepresentable = tag->unrepresentableValues()};
  if (reportsLosses) addNotes(source, file, *tag, fields);
  return source;
}

ID3TagEditorStore::ID3TagEditorStore(bool preservesDate)
    : MP3TagStore([editor = std::make_shared<const ID3TagEditor::ID3TagEditor>()](
                      MP3File& file) { return std::make_unique<EngineTag>(*editor, file); },
                  preservesDate) {
}

LosslessTagStore::LosslessTagStore(bool preservesDate)
    : MP3TagStore([](MP3File& file) { return std::make_unique<StandardTag>(file); }, preservesDate) {
}

TagSet LosslessTagStore::accepted(const TagSet& tags, TagFields fields) const {
  return acceptedTags(tags, fields);
}

void LosslessTagStore::explainUnsupported(const std::filesystem::path& path) const {
  constexpr std::size_t searchedSize = 0x10000;
  const platform::Bytes start = platform::FileHandle::forReading(path).readFirst(searchedSize);
  const platform::ByteView bytes = start;
  for (std::size_t at = 0; (at = platform::charactersOf(bytes).find("ID3", at)) != std::string_view::npos;
       ++at) {
    if (ID3v2::tagLength(bytes.subspan(at))) throw LosslessError::tagIsNotInFront(path);
  }
}

WholeTagStore::WholeTagStore(const std::filesystem::path& source, bool keepsAPETags, bool preservesDate)
    : WholeTagStore(wholeTag(source), keepsAPETags, preservesDate) {
}

WholeTagStore::WholeTagStore(platform::SharedBytes tag, bool keepsAPETags, bool preservesDate)
    : MP3TagStore([tag = std::move(tag), keepsAPETags](
                      MP3File& file) { return std::make_unique<CopiedTag>(file, tag, keepsAPETags); },
                  preservesDate) {
}

}  // namespace QuillmarkKit
