#include "QuillmarkKit/store/standard/StandardTag.h"

#include <algorithm>
#include <utility>

#include "ID3v2/Reading.h"
#include "ID3v2/Writing.h"
#include "QuillmarkKit/store/file/StoreErrors.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagDifferences.h"
#include "QuillmarkKit/store/standard/TagNotes.h"

namespace QuillmarkKit {

namespace {

/// Returns the padding in bytes for a header and frames of `size` bytes that replace a tag of `oldSize`
/// bytes. It lets the audio stay where it is, or moves it by whole blocks, so that file systems that can
/// share blocks need not copy it.
std::size_t paddingFor(std::size_t size, std::uint64_t oldSize) {
  constexpr std::size_t mostRoom = 0x10000;
  constexpr std::size_t leastRoom = 0x400;
  constexpr std::size_t blockSize = 0x1000;
  if (size <= oldSize && oldSize - size <= mostRoom) return static_cast<std::size_t>(oldSize - size);
  const std::size_t tooFar = (size + leastRoom + blockSize - oldSize % blockSize) % blockSize;
  return leastRoom + (blockSize - tooFar) % blockSize;
}

/// Returns the tag as bytes that replace a tag of `oldSize` bytes. Throws LosslessError if a reading of these
/// bytes lacks something in the tag or does not have the wanted values.
platform::SharedBytes bytesOf(const ID3v2::Tag& tag, const TagSet& wanted, std::uint64_t oldSize,
                              const std::filesystem::path& url) {
  ID3v2::Written written = ID3v2::write(tag, [&](std::size_t size) { return paddingFor(size, oldSize); });
  if (!written.notKept.empty()) throw LosslessError::cannotKeep(url, written.notKept.front());
  platform::SharedBytes bytes(std::move(written.bytes));
  const auto reading = ID3v2::read(bytes);
  const ID3v2::Tag readBack = reading ? reading->tag : ID3v2::Tag();
  const auto differences = TagDifferences::between(tag, readBack);
  if (!differences.empty()) {
    const auto [dropped, changed] = TagNotes::describe(differences);
    throw LosslessError::cannotKeep(url, dropped.empty() ? changed.front() : dropped.front());
  }
  const TagFields others = LosslessConversion::fieldsOf(readBack).differing(wanted);
  for (const TagField field : allTagFields) {
    if (others.contains(field)) throw LosslessError::cannotKeep(url, "the " + nameInSentence(field));
  }
  return bytes;
}

/// Returns the name of data in the tag that is not a frame and can be audio, or an empty text. Frames that
/// cannot be read have an identifier.
std::string damageOf(const FileTags& tags) {
  const auto part = std::ranges::find(tags.unreadable, "", &ID3v2::UnreadablePart::identifier);
  return part != tags.unreadable.end() ? part->what : "";
}

}  // namespace

StandardTag::StandardTag(MP3File& file)
    : path_(file.path()),
      file_(readTags(file)),
      claimedSize_(file_.hasID3v2Tag ? file.tagBytes().size() : 0),
      tags_(LosslessConversion::fieldsOf(file_.tag)) {
  if (file_.hasID3v2Tag) bytes_ = file.tagBytes().slice(0, static_cast<std::size_t>(file_.audioStart));
  file.dropTagBytes();
}

/// Returns those of the fields whose data in the tag no field value can represent and that can be removed
/// without another field.
TagFields StandardTag::unrepresentableFields(TagFields fields) const {
  TagFields unrepresentable;
  for (const TagField field : allTagFields) {
    const bool isUnrepresentable = fields.contains(field) &&
                                   LosslessConversion::unrepresentableValue(file_.tag, tags_, field) &&
                                   !LosslessConversion::sharesUnreadFrame(file_.tag, field, fields);
    if (isUnrepresentable) unrepresentable.insert(field);
  }
  return unrepresentable;
}

bool StandardTag::isChangedBy(const TagChange& change) const {
  if (change.tags != tags_) return true;
  if (change.wholeTag) return bytes_ != *change.wholeTag;
  const TagFields cleared = change.cleared();
  return file_.hasUnreadable(cleared) || !unrepresentableFields(cleared).isEmpty();
}

void StandardTag::requireWritableElsewhere(TagFields fields) const {
  const std::vector<std::string> unreadable = file_.unreadablePartsFor(fields);
  if (!unreadable.empty()) throw LosslessError::about(path_, "--lossless cannot read " + unreadable.front());
  for (const TagField field : allTagFields) {
    const auto value = fields.contains(field)
                           ? LosslessConversion::unrepresentableValue(file_.tag, tags_, field)
                           : std::nullopt;
    if (!value) continue;
    throw LosslessError::unexpected(
        path_, "--lossless cannot carry its " + nameInSentence(field) + " " + TagNotes::describe(*value),
        TagNotes::expectedValue(field));
  }
}

UnrepresentableValues StandardTag::unrepresentableValues() const {
  UnrepresentableValues values;
  for (const TagField field : allTagFields) {
    if (auto value = LosslessConversion::unrepresentableValue(file_.tag, tags_, field))
      values.emplace(field, TagNotes::describe(*value));
  }
  return values;
}

SourceNotes StandardTag::notes(TagFields fields) const {
  return TagNotes::ofSource(file_, tags_, fields);
}

NewTag StandardTag::changedBy(const TagChange& change, bool reportsLosses) const {
  if (change.wholeTag) return replacedBy(change);
  if (file_.hasAPETag) throw LosslessError::hidesAPETag(path_);
  const auto lost = std::ranges::find(file_.unreadable, false, &ID3v2::UnreadablePart::isFrame);
  if (lost != file_.unreadable.end()) throw LosslessError::cannotKeep(path_, lost->what);
  const TagFields unrepresentable = unrepresentableFields(change.cleared());
  TagFields changed = tags_.differing(change.tags);
  changed.insert(unrepresentable);
  for (const TagField field : allTagFields) {
    if (changed.contains(field) && LosslessConversion::sharesUnreadFrame(file_.tag, field, changed))
      throw LosslessError::cannotKeep(path_, "the frame " + std::string(frameIdentifier(field)));
  }
  NewTag made{.bytes = {}, .audioStart = file_.audioStart};
  if (reportsLosses) made.losses = TagNotes::ofRemoving(file_.tag, tags_, unrepresentable);
  made.keepsArtwork = changed.contains(TagField::artwork) && change.tags.artwork &&
                      LosslessConversion::keepsShownPicture(file_.tag);
  ID3v2::Tag tag = file_.tag;
  // v2.2 can only be read.
  if (tag.version == 2) tag.version = 3;
  LosslessConversion::setFields(tag, change.tags, changed);
  if (!tag.frames.empty()) made.bytes = bytesOf(tag, change.tags, file_.audioStart, path_);
  return made;
}

/// Returns the whole tag of the change.
NewTag StandardTag::replacedBy(const TagChange& change) const {
  if (file_.hasAPETag && !change.mayHideAPETag) throw LosslessError::hidesAPETag(path_);
  if (const std::string damage = damageOf(file_); !damage.empty())
    throw LosslessError::about(
        path_, "--whole-tag does not replace a damaged tag, because " + damage + " may be audio");
  const bool hidesID3v1Tag = !file_.hasID3v2Tag && !file_.tag.frames.empty();
  std::string losses = hidesID3v1Tag ? "hides its ID3v1 tag" : "";
  if (file_.hasAPETag) losses += losses.empty() ? "hides its APE tag" : "; hides its APE tag";
  if (!losses.empty()) losses += ".";
  return {.bytes = *change.wholeTag, .audioStart = file_.audioStart, .losses = std::move(losses)};
}

TagChange StandardTag::copied() const {
  if (!file_.hasID3v2Tag) throw LosslessError::cannotCopyTag(path_, "it has none");
  if (const std::string damage = damageOf(file_); !damage.empty())
    throw LosslessError::cannotCopyTag(path_, damage + " cannot be read");
  // The header announces more bytes than the tag has if its footer is missing.
  if (claimedSize_ != file_.audioStart) throw LosslessError::cannotCopyTag(path_, "its footer is missing");
  return {.tags = tags_, .selected = TagFields::all, .wholeTag = bytes_};
}

TagSet acceptedTags(const TagSet& tags, TagFields fields) {
  TagSet readBack = LosslessConversion::asRead(tags);
  for (const TagField field : allTagFields) {
    // A text may be read in another form than it was given, but a number must be the same, and a picture must
    // be present.
    const bool isKept = dispatch(
        field, [](TextMember) { return true; },
        [&](NumberMember number) { return readBack.*number == tags.*number; },
        [&] { return readBack.artwork.has_value() == tags.artwork.has_value(); });
    if (isKept || !fields.contains(field)) continue;
    throw LosslessError::unexpected(
        {}, "--lossless cannot write the " + nameInSentence(field) + " " + *tags.value(field),
        TagNotes::expectedValue(field));
  }
  return readBack;
}

}  // namespace QuillmarkKit
