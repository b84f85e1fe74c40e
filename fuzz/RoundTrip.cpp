#include <algorithm>

#include "ID3TagEditor/ID3TagEditor.h"
#include "ID3TagEditor/model/FrameLayouts.h"
#include "ID3v2/Reading.h"
#include "ID3v2/TagsAtTheEnd.h"
#include "ID3v2/Writing.h"
#include "QuillmarkKit/store/engine/EngineTag.h"
#include "QuillmarkKit/store/engine/RawFrames.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagDifferences.h"
#include "fuzz/FuzzTarget.h"
#include "platform/base/Strings.h"

// Checks that tags are read as they were from what is written by the engine, as raw frames and by the
// standards.

using namespace ID3TagEditor;
using namespace QuillmarkKit;
using namespace std::string_view_literals;
using platform::SharedBytes;

namespace {

const ::ID3TagEditor::ID3TagEditor editor;

/// Returns whether the engine may split the genre: it drops the text before a word in parentheses, and
/// appends an unknown word to the rest.
bool isGenreReadInParts(std::string_view text) {
  return text.find('(') != std::string_view::npos;
}

/// Returns whether a part of the content would be read as its description: the engine splits the two at the
/// last terminator that is followed by a mark.
bool isContentReadInParts(std::string_view text) {
  const platform::Bytes content = platform::Strings::toUTF16WithMark(text).value();
  return platform::charactersOf(content).find("\0\0\xFF\xFE"sv) != std::string_view::npos;
}

/// Returns whether the engine writes the two numbers and reads them as they were, from a text of two digits
/// for each.
bool isPairLasting(OptionalInteger first, OptionalInteger second) {
  return first && second && std::min(*first, *second) >= 0 && std::max(*first, *second) <= 99;
}

/// Returns whether the engine writes the frame and reads it as it was.
bool isLasting(const ::ID3TagEditor::ID3Frame& frame) {
  if (const auto* number = dynamic_cast<const ID3FrameWithIntegerContent*>(&frame))
    return number->value().has_value();
  if (const auto* genre = dynamic_cast<const ID3FrameGenre*>(&frame))
    return genre->identifier || !isGenreReadInParts(genre->description.value_or(""));
  if (const auto* localized = dynamic_cast<const ID3FrameWithLocalizedContent*>(&frame))
    return !isContentReadInParts(localized->content());
  if (const auto* day = dynamic_cast<const ID3FrameRecordingDayMonth*>(&frame))
    return isPairLasting(day->day(), day->month());
  if (const auto* time = dynamic_cast<const ID3FrameRecordingHourMinute*>(&frame))
    return isPairLasting(time->hour(), time->minute());
  if (const auto* recorded = dynamic_cast<const ID3FrameRecordingDateTime*>(&frame)) {
    // Counts of seconds up to 9999 are read as a year.
    const auto date = recorded->recordingDateTime().date;
    return date && date->year && date != RecordingDate{.day = 1, .month = 1, .year = 1970};
  }
  const auto* picture = dynamic_cast<const ID3FrameAttachedPicture*>(&frame);
  if (picture == nullptr) return true;
  // A second signature is read as another picture.
  const std::string_view data = platform::charactersOf(picture->picture());
  return data.find("\xFF\xD8\xFF\xE0"sv, 1) == std::string_view::npos &&
         data.find("\x89PNG"sv, 1) == std::string_view::npos;
}

/// Returns the input with its tag replaced by `tag`, or nothing if the tag has no frame that can be written.
std::optional<SharedBytes> written(ID3Tag& tag, const SharedBytes& input) {
  try {
    return editor.write(tag, input);
  } catch (const ID3TagEditorError& error) {
    require(error == ID3TagEditorError::invalidTagData, "a tag that was read is too small to be too big");
    return std::nullopt;
  }
}

void checkEngine(ID3Tag& tag, const SharedBytes& input) {
  const std::size_t audioStart = tag.properties.size + ID3TagConfiguration::headerSize();
  require(audioStart <= input.size(), "the tag lies inside");
  require(platform::Strings::isValidUTF8(tag.debugDescription()), "the texts of a tag are UTF-8");
  std::erase_if(tag.frames, [](const auto& entry) { return !isLasting(*entry.second); });
  const auto first = written(tag, input);
  if (!first) return;
  auto back = editor.read(*first);
  require(back.has_value(), "a tag that was written is read");
  require(platform::charactersOf(*first).ends_with(platform::charactersOf(input).substr(audioStart)),
          "the audio stays");
  require(back->debugDescription() == tag.debugDescription(), "all values come back");
  require(ID3TagContentReader(*back).attachedPictures() == ID3TagContentReader(tag).attachedPictures(),
          "all pictures come back");
  require(written(*back, *first) == first, "a later round gives the same bytes");
}

void checkRawFrames(const SharedBytes& input) {
  const auto tag = ID3Frames::parse(input);
  if (!tag) return;
  require(tag->audioOffset <= input.size(), "the tag lies inside the bytes");
  std::size_t payloads = 0;
  for (const auto& frame : tag->frames) payloads += frame.payload.size();
  require(payloads + 10 * tag->frames.size() + 10 <= tag->audioOffset, "frames do not overlap");
  const SharedBytes written = ID3Frames::tagData(tag->frames, 16, "written.mp3");
  const auto again = ID3Frames::parse(written);
  require(again && again->frames == tag->frames, "written frames are read as they were");
  require(again->version == 3 && again->audioOffset == written.size(), "the whole of it is a tag of v2.3");
}

/// Returns a tag of the input's frames that no tag set contains.
platform::Bytes otherFrames(const SharedBytes& input) {
  auto tag = ID3Frames::parse(input).value_or(ID3Frames::ParsedTag());
  std::erase_if(tag.frames, [](const auto& frame) { return isFieldFrame(frame.id); });
  return ID3Frames::tagData(tag.frames, 0, "input.mp3");
}

/// Returns a tag with the tag set and with the frames of the input that no tag set contains.
SharedBytes stored(const TagSet& tags, const SharedBytes& input) {
  ID3Tag tag = makeTag(tags);
  platform::Bytes bytes = editor.write(tag, SharedBytes());
  const ID3Frames::UnmanagedFrames others(input);
  if (!others.empty()) ID3Frames::appendTo(bytes, others, "written.mp3");
  return bytes;
}

/// Returns the tags normalised until nothing changes, because removing a zero byte may expose white space.
TagSet settled(TagSet tags) {
  for (TagSet once = tags.normalized(); once != tags; once = tags.normalized()) tags = once;
  return tags;
}

void checkStore(TagSet tags, const SharedBytes& input) {
  if (tags.genre && isGenreReadInParts(*tags.genre)) tags.genre.reset();
  if (tags.comment && isContentReadInParts(*tags.comment)) tags.comment.reset();
  if (tags.lyrics && isContentReadInParts(*tags.lyrics)) tags.lyrics.reset();
  if (tags.isEmpty()) return;
  const SharedBytes file = stored(tags, input);
  const auto back = editor.read(file);
  require(back && tagSetFrom(*back) == tags, "a tag set is read as it was written");
  require(otherFrames(file) == otherFrames(input), "every other frame stays as it was");
  require(stored(tags, file) == file, "writing again changes nothing");
}

ID3v2::Tag readBack(const ID3v2::Tag& tag) {
  ID3v2::Written written = ID3v2::write(tag, [](std::size_t) { return 16; });
  require(written.notKept.empty(), "what was read can be written");
  const std::size_t size = written.bytes.size();
  const auto reading = ID3v2::read(SharedBytes(std::move(written.bytes)));
  require(reading && reading->length == size, "what was written is read");
  require(std::ranges::all_of(reading->unreadable, &ID3v2::UnreadablePart::isFrame), "all of it are frames");
  return reading->tag;
}

/// Returns the tag without the original bytes of the frames that can be made from their content, as if these
/// had been changed.
ID3v2::Tag withoutOriginals(ID3v2::Tag tag) {
  for (ID3v2::Frame& frame : tag.frames) {
    if (std::holds_alternative<ID3v2::Unread>(frame.content)) continue;
    if (std::holds_alternative<ID3v2::Opaque>(frame.content)) continue;
    frame.original = {};
    if (tag.version == 4) frame.flags = frame.group = 0;
  }
  return tag;
}

void checkStandard(const SharedBytes& input) {
  ID3v2::readID3v1(input);
  auto reading = ID3v2::read(input);
  if (!reading) return;
  if (reading->tag.version == 2) reading->tag.version = 3;
  ID3v2::Tag tag = readBack(reading->tag);
  require(tag == reading->tag, "frames come back");
  require(reading->tag.frames.empty() || reading->tag.frames[0].original.empty() ||
              std::ranges::equal(tag.frames, reading->tag.frames, {}, &ID3v2::Frame::original,
                                 &ID3v2::Frame::original),
          "frames come back byte for byte");
  const ID3v2::Tag changed = withoutOriginals(reading->tag);
  require(readBack(changed) == changed, "frames that are made anew come back");

  require(TagDifferences::between(tag, tag).empty(), "nothing is lost of what stays");
  const TagSet fields = settled(LosslessConversion::fieldsOf(tag));
  LosslessConversion::setFields(tag, fields, TagFields::all);
  require(LosslessConversion::fieldsOf(tag) == fields, "fields that are set are read");
}

}  // namespace

void fuzzTarget(const SharedBytes& input) {
  checkRawFrames(input);
  checkStandard(input);
  std::optional<ID3Tag> tag;
  try {
    tag = editor.read(input);
  } catch (const ID3TagEditorError& error) {
    require(error == ID3TagEditorError::corruptedFile, "the only error of reading bytes is a corrupted file");
  }
  if (!tag) return;
  checkStore(settled(tagSetFrom(*tag)), input);
  checkEngine(*tag, input);
}
