#include "QuillmarkKit/store/standard/StandardTag.h"

#include <algorithm>
#include <utility>

#include "ID3v2/Reading.h"
#include "ID3v2/Writing.h"
#include "QuillmarkKit/store/file/FieldFrames.h"
#include "QuillmarkKit/store/file/StoreErrors.h"
#include "QuillmarkKit/store/standard/FileTags.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagNotes.h"
#include "platform/base/Formats.h"

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
  const TagLosses::Losses losses = TagLosses::between(tag, readBack);
  for (const auto* lost : {&losses.dropped, &losses.changed}) {
    if (!lost->empty()) throw LosslessError::cannotKeep(url, lost->front());
  }
  const TagFields others = LosslessConversion::fieldsOf(readBack).differing(wanted);
  for (const TagField field : allTagFields) {
    if (others.contains(field)) throw LosslessError::cannotKeep(url, "the " + nameInSentence(field));
  }
  return bytes;
}

}  // namespace

StandardTag::StandardTag(MP3File& file)
    : path_(file.path()), file_(readTags(file)), tags_(LosslessConversion::fieldsOf(file_.tag)) {
  // The frames keep alive the bytes that they need.
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

bool StandardTag::holdsMoreThanValues(TagFields fields) const {
  return file_.hasUnreadable(fields) || !unrepresentableFields(fields).isEmpty();
}

void StandardTag::requireWritableElsewhere(TagFields fields) const {
  const std::string unreadable = file_.unreadableFor(fields);
  if (!unreadable.empty()) throw LosslessError::cannotRead(path_, unreadable);
  for (const TagField field : allTagFields) {
    const auto value = fields.contains(field)
                           ? LosslessConversion::unrepresentableValue(file_.tag, tags_, field)
                           : std::nullopt;
    if (!value) continue;
    throw LosslessError::cannotCarry(path_, nameInSentence(field) + " " + *value,
                                     LosslessConversion::expectedValue(field));
  }
}

UnrepresentableValues StandardTag::unrepresentableValues() const {
  UnrepresentableValues values;
  for (const TagField field : allTagFields) {
    if (auto value = LosslessConversion::unrepresentableValue(file_.tag, tags_, field))
      values.emplace(field, *value);
  }
  return values;
}

OpenTag::SourceNotes StandardTag::sourceNotes(TagFields fields) const {
  return {.losses = TagLosses::ofReading(file_, tags_, fields),
          .beyondFields = QuillmarkKit::beyondFields(file_.tag)};
}

/// Returns a sentence about the values of these fields, which no listing shows and which a write removes.
std::string StandardTag::losses(TagFields unrepresentable) const {
  std::string sentence;
  for (const TagField field : allTagFields) {
    if (!unrepresentable.contains(field)) continue;
    sentence += sentence.empty() ? "drops its " : "; drops its ";
    sentence +=
        nameInSentence(field) + " " + *LosslessConversion::unrepresentableValue(file_.tag, tags_, field);
  }
  return sentence.empty() ? sentence : sentence + ".";
}

NewTag StandardTag::changedBy(const TagChange& change) {
  if (file_.hasAPETag) throw LosslessError::hidesAPETag(path_);
  const auto lost = std::ranges::find(file_.unreadable, false, &ID3v2::UnreadablePart::isFrame);
  if (lost != file_.unreadable.end()) throw LosslessError::cannotKeep(path_, lost->what);
  const TagFields unrepresentable = unrepresentableFields(change.cleared());
  TagFields changed = tags_.differing(change.tags);
  changed.insert(unrepresentable);
  for (const TagField field : allTagFields) {
    if (changed.contains(field) && LosslessConversion::sharesUnreadFrame(file_.tag, field, changed))
      throw LosslessError::cannotKeep(path_, "the frame " + std::string(FieldFrames::identifierOf(field)));
  }
  NewTag made{.bytes = {}, .audioStart = file_.audioStart, .losses = losses(unrepresentable)};
  made.keepsArtwork = changed.contains(TagField::artwork) && change.tags.artwork &&
                      LosslessConversion::keepsShownPicture(file_.tag);
  // v2.2 can only be read.
  if (file_.tag.version == 2) file_.tag.version = 3;
  LosslessConversion::setFields(file_.tag, change.tags, changed);
  if (!file_.tag.frames.empty()) made.bytes = bytesOf(file_.tag, change.tags, file_.audioStart, path_);
  return made;
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
    throw LosslessError::cannotWrite(nameInSentence(field) + " " + *tags.value(field),
                                     LosslessConversion::expectedValue(field));
  }
  return readBack;
}

namespace {

/// Returns the bytes before the audio.
platform::SharedBytes tagBytesOf(MP3File& file, const FileTags& tags) {
  return file.tagBytes().slice(0, static_cast<std::size_t>(tags.audioStart));
}

/// Returns the name of data in the tag that is not a frame, or an empty text. Frames that cannot be read have
/// an identifier.
std::string damageOf(const FileTags& tags) {
  const auto part = std::ranges::find(tags.unreadable, "", &ID3v2::UnreadablePart::identifier);
  return part != tags.unreadable.end() ? part->what : "";
}

}  // namespace

CopiedTag::CopiedTag(MP3File& file, platform::SharedBytes newTag, bool keepsAPETag)
    : path_(file.path()), newTag_(std::move(newTag)), keepsAPETag_(keepsAPETag) {
  const FileTags old = readTags(file);
  hasAPETag_ = old.hasAPETag;
  hasOnlyID3v1Tag_ = !old.hasID3v2Tag && !old.tag.frames.empty();
  damage_ = damageOf(old);
  isSame_ = tagBytesOf(file, old) == newTag_;
  audioStart_ = old.audioStart;
  tags_ = LosslessConversion::fieldsOf(old.tag);
  file.dropTagBytes();
}

NewTag CopiedTag::changedBy(const TagChange&) {
  if (hasAPETag_ && keepsAPETag_) throw LosslessError::hidesAPETag(path_);
  if (!damage_.empty()) throw LosslessError::cannotReplaceTag(path_, damage_);
  std::string losses = hasOnlyID3v1Tag_ ? "hides its ID3v1 tag" : "";
  if (hasAPETag_) losses += losses.empty() ? "hides its APE tag" : "; hides its APE tag";
  if (!losses.empty()) losses += ".";
  return {.bytes = newTag_, .audioStart = audioStart_, .losses = std::move(losses)};
}

platform::SharedBytes wholeTag(const std::filesystem::path& path) {
  MP3File file(path);
  const FileTags tags = readTags(file);
  if (!tags.hasID3v2Tag) throw LosslessError::cannotCopyTag(path, "it has none");
  if (const std::string damage = damageOf(tags); !damage.empty())
    throw LosslessError::cannotCopyTag(path, damage + " cannot be read");
  // The header announces more bytes than the tag has if its footer is missing.
  if (file.tagBytes().size() != tags.audioStart)
    throw LosslessError::cannotCopyTag(path, "its footer is missing");
  return tagBytesOf(file, tags);
}

}  // namespace QuillmarkKit
