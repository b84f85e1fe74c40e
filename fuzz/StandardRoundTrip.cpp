#include <algorithm>

#include "ID3v2/Reading.h"
#include "ID3v2/TagsAtTheEnd.h"
#include "ID3v2/Writing.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagNotes.h"
#include "fuzz/FuzzTarget.h"

using namespace QuillmarkKit;
using platform::SharedBytes;

namespace {

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

}  // namespace

void fuzzTarget(const SharedBytes& input) {
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

  const auto [dropped, altered] = TagLosses::between(tag, tag);
  require(dropped.empty() && altered.empty(), "nothing is lost of what stays");
  TagSet fields = LosslessConversion::fieldsOf(tag);
  // Removing a zero byte may expose white space, so normalise until nothing changes.
  for (TagSet once = fields.normalized(); once != fields; once = fields.normalized()) fields = once;
  LosslessConversion::setFields(tag, fields, TagFields::all);
  require(LosslessConversion::fieldsOf(tag) == fields, "fields that are set are read");
}
