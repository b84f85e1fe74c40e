#include "QuillmarkKit/store/LosslessTagStore.h"

#include <algorithm>
#include <utility>

#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "ID3TagEditor/model/Mp3Extension.h"
#include "ID3v2/Reading.h"
#include "ID3v2/Writing.h"
#include "QuillmarkKit/store/FieldFrames.h"
#include "QuillmarkKit/store/FileTags.h"
#include "QuillmarkKit/store/ID3Frames.h"
#include "QuillmarkKit/store/LosslessConversion.h"
#include "QuillmarkKit/store/LosslessError.h"
#include "QuillmarkKit/store/MP3Check.h"
#include "QuillmarkKit/store/TagDescriptions.h"
#include "QuillmarkKit/store/TagFileError.h"
#include "QuillmarkKit/store/TagLosses.h"

namespace QuillmarkKit {

namespace {

using ID3TagEditor::ID3TagEditorError;

/// As much as a tag gets from the engine.
constexpr std::size_t paddingSize = 2048;

/// Both stores take the same files.
FileTags readTagsOfMP3(platform::FileHandle& file) {
  try {
    ID3TagEditor::requireMp3Extension(file.path());
  } catch (const ID3TagEditorError& error) {
    throw TagFileError(error, file.path());
  }
  return readTags(file);
}

/// The tag as bytes, once it is sure that they say all that the tag says, and as its fields what is wanted.
platform::SharedBytes bytesOf(const ID3v2::Tag& tag, const TagSet& wanted, const std::filesystem::path& url) {
  const bool hasOthers = !std::ranges::all_of(tag.frames, ID3Frames::isManaged, &ID3v2::Frame::identifier);
  ID3v2::Written written = ID3v2::write(tag, hasOthers ? 0 : paddingSize);
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
    if (others.contains(field)) throw LosslessError::cannotKeep(url, "the " + TagDescriptions::nameOf(field));
  }
  return bytes;
}

/// Those of the fields about which the tag says what their values cannot say, and which can go without
/// another one.
TagFields uncarriedFields(const ID3v2::Tag& tag, TagFields fields) {
  TagFields uncarried;
  for (const TagField field : allTagFields) {
    const bool isUncarried = fields.contains(field) && LosslessConversion::uncarried(tag, field) &&
                             !LosslessConversion::sharesUnreadFrame(tag, field, fields);
    if (isUncarried) uncarried.insert(field);
  }
  return uncarried;
}

/// What goes with a write, in words: what the fields hold that no listing shows, and what the tag hides.
std::string losses(const FileTags& old, TagFields uncarried) {
  std::string sentence = old.hasAPETag ? "hides its APE tag" : "";
  for (const TagField field : allTagFields) {
    if (!uncarried.contains(field)) continue;
    sentence += sentence.empty() ? "drops its " : "; drops its ";
    sentence += TagDescriptions::nameOf(field) + " " + *LosslessConversion::uncarried(old.tag, field);
  }
  return sentence.empty() ? sentence : sentence + ".";
}

}  // namespace

TagSet LosslessTagStore::tagsIn(platform::FileHandle& file) const {
  return LosslessConversion::fieldsOf(readTagsOfMP3(file).tag);
}

MP3TagStore::NewTag LosslessTagStore::newTag(const Change& change, platform::FileHandle& file) const {
  FileTags old = readTagsOfMP3(file);
  if (!old.unreadable.empty()) throw LosslessError::cannotKeep(file.path(), old.unreadable.front().what);
  const TagFields uncarried = uncarriedFields(old.tag, change.cleared);
  TagFields changed = LosslessConversion::fieldsOf(old.tag).differing(change.tags);
  changed.insert(uncarried);
  for (const TagField field : allTagFields) {
    if (changed.contains(field) && LosslessConversion::sharesUnreadFrame(old.tag, field, changed))
      throw LosslessError::cannotKeep(file.path(),
                                      "the frame " + std::string(FieldFrames::identifierOf(field)));
  }
  const std::string lost = tellsLosses() ? losses(old, uncarried) : "";
  LosslessConversion::setFields(old.tag, change.tags, changed);
  if (old.tag.frames.empty())
    throw TagFileError(ID3TagEditorError(ID3TagEditorError::invalidTagData), file.path());
  return {.bytes = bytesOf(old.tag, change.tags, file.path()), .audioStart = old.audioStart, .losses = lost};
}

bool LosslessTagStore::saysMore(TagFields fields, const std::filesystem::path& in) const {
  if (fields.isEmpty()) return false;
  platform::FileHandle file = openMP3(in);
  const FileTags tags = readTagsOfMP3(file);
  // A frame that cannot be said in v2.3 keeps the file from being written, which is to be told.
  return tags.hasUnreadable(fields) || !uncarriedFields(tags.tag, fields).isEmpty();
}

TagSet LosslessTagStore::readSource(const std::filesystem::path& from, TagFields fields) const {
  platform::FileHandle file = openMP3(from);
  const FileTags source = readTagsOfMP3(file);
  const std::string unreadable = source.unreadableFor(fields);
  if (!unreadable.empty()) throw LosslessError::cannotRead(from, unreadable);
  for (const TagField field : allTagFields) {
    const auto value =
        fields.contains(field) ? LosslessConversion::uncarried(source.tag, field) : std::nullopt;
    if (!value) continue;
    throw LosslessError::cannotCarry(from, TagDescriptions::nameOf(field) + " " + *value,
                                     LosslessConversion::expectedValue(field));
  }
  return accepted(LosslessConversion::fieldsOf(source.tag), fields);
}

TagSet LosslessTagStore::accepted(const TagSet& tags, TagFields fields) const {
  TagSet held = LosslessConversion::heldForm(tags);
  for (const TagField field : allTagFields) {
    // A text may be said in another form; a number is that number, and a picture that picture.
    const bool isKept = dispatch(
        field, [](TextMember) { return true; },
        [&](NumberMember number) { return held.*number == tags.*number; },
        [&] { return held.artwork.has_value() == tags.artwork.has_value(); });
    if (isKept || !fields.contains(field)) continue;
    throw LosslessError::cannotWrite(TagDescriptions::nameOf(field) + " " + *tags.value(field),
                                     LosslessConversion::expectedValue(field));
  }
  return held;
}

}  // namespace QuillmarkKit
