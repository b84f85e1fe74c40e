#include "QuillmarkKit/store/standard/StandardTag.h"

#include <algorithm>
#include <utility>

#include "ID3v2/Reading.h"
#include "ID3v2/Writing.h"
#include "QuillmarkKit/store/file/FieldFrames.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/LosslessError.h"
#include "QuillmarkKit/store/standard/TagDescriptions.h"
#include "QuillmarkKit/store/standard/TagLosses.h"
#include "platform/Formats.h"

namespace QuillmarkKit {

namespace {

/// Returns the tag as bytes. Throws LosslessError unless they say all that the tag says, and the wanted
/// values as its fields.
platform::SharedBytes bytesOf(const ID3v2::Tag& tag, const TagSet& wanted, const std::filesystem::path& url) {
  const bool hasOthers =
      !std::ranges::all_of(tag.frames, FieldFrames::areOfAField, &ID3v2::Frame::identifier);
  ID3v2::Written written = ID3v2::write(tag, hasOthers ? 0 : platform::usualPadding);
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

}  // namespace

StandardTag::StandardTag(MP3File& file)
    : path_(file.path()), file_(readTags(file)), tags_(LosslessConversion::fieldsOf(file_.tag)) {
  // The frames keep alive what they need of the bytes.
  file.dropTagBytes();
}

/// Returns those of the fields that the tag says something about which their values cannot say, and which can
/// be removed without another field.
TagFields StandardTag::uncarriedFields(TagFields fields) const {
  TagFields uncarried;
  for (const TagField field : allTagFields) {
    const bool isUncarried = fields.contains(field) &&
                             LosslessConversion::uncarried(file_.tag, tags_, field) &&
                             !LosslessConversion::sharesUnreadFrame(file_.tag, field, fields);
    if (isUncarried) uncarried.insert(field);
  }
  return uncarried;
}

bool StandardTag::holdsMoreThanValues(TagFields fields) const {
  // A frame that cannot be read keeps the file from being written, which has to be reported.
  return file_.hasUnreadable(fields) || !uncarriedFields(fields).isEmpty();
}

void StandardTag::requireCarriable(TagFields fields) const {
  const std::string unreadable = file_.unreadableFor(fields);
  if (!unreadable.empty()) throw LosslessError::cannotRead(path_, unreadable);
  for (const TagField field : allTagFields) {
    const auto value =
        fields.contains(field) ? LosslessConversion::uncarried(file_.tag, tags_, field) : std::nullopt;
    if (!value) continue;
    throw LosslessError::cannotCarry(path_, TagDescriptions::nameOf(field) + " " + *value,
                                     LosslessConversion::expectedValue(field));
  }
}

/// Returns what goes with a write: values of the fields that no listing shows, and tags that are hidden.
std::string StandardTag::losses(TagFields uncarried) const {
  std::string sentence = file_.hasAPETag ? "hides its APE tag" : "";
  for (const TagField field : allTagFields) {
    if (!uncarried.contains(field)) continue;
    sentence += sentence.empty() ? "drops its " : "; drops its ";
    sentence +=
        TagDescriptions::nameOf(field) + " " + *LosslessConversion::uncarried(file_.tag, tags_, field);
  }
  return sentence.empty() ? sentence : sentence + ".";
}

NewTag StandardTag::changedBy(const TagChange& change) {
  if (!file_.unreadable.empty()) throw LosslessError::cannotKeep(path_, file_.unreadable.front().what);
  const TagFields uncarried = uncarriedFields(change.cleared());
  TagFields changed = tags_.differing(change.tags);
  changed.insert(uncarried);
  for (const TagField field : allTagFields) {
    if (changed.contains(field) && LosslessConversion::sharesUnreadFrame(file_.tag, field, changed))
      throw LosslessError::cannotKeep(path_, "the frame " + std::string(FieldFrames::identifierOf(field)));
  }
  NewTag made{.bytes = {}, .audioStart = file_.audioStart, .losses = losses(uncarried)};
  LosslessConversion::setFields(file_.tag, change.tags, changed);
  if (!file_.tag.frames.empty()) made.bytes = bytesOf(file_.tag, change.tags, path_);
  return made;
}

TagSet acceptedTags(const TagSet& tags, TagFields fields) {
  TagSet held = LosslessConversion::asRead(tags);
  for (const TagField field : allTagFields) {
    // A text may be written in another form; a number is that number, and a picture that picture.
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
