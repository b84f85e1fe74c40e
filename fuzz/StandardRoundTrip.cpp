#include "ID3v2/Dates.h"
#include "ID3v2/Reading.h"
#include "ID3v2/TagsAtTheEnd.h"
#include "ID3v2/Writing.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagLosses.h"
#include "fuzz/FuzzTarget.h"

using namespace QuillmarkKit;
using platform::SharedBytes;

namespace {

/// What is read from the tag that these frames make.
std::vector<ID3v2::Frame> readBack(const std::vector<ID3v2::Frame>& frames) {
  ID3v2::Written written = ID3v2::write({.version = 3, .frames = frames}, 16);
  require(written.notKept.empty(), "what was read can be written");
  const std::size_t size = written.bytes.size();
  const auto reading = ID3v2::read(SharedBytes(std::move(written.bytes)));
  require(reading && reading->length == size && reading->unreadable.empty(), "what was written is read");
  return reading->tag.frames;
}

/// The frames without the bytes that they come from, as if each had been changed.
std::vector<ID3v2::Frame> withoutOriginals(std::vector<ID3v2::Frame> frames) {
  for (ID3v2::Frame& frame : frames) frame.original = {};
  return frames;
}

}  // namespace

void fuzzTarget(const SharedBytes& input) {
  ID3v2::readID3v1(input);
  const auto reading = ID3v2::read(input);
  if (!reading) return;
  const std::vector<ID3v2::Frame> frames = ID3v2::withDatesOfV23(reading->tag.frames);
  require(readBack(frames) == frames, "frames come back");
  const std::vector<ID3v2::Frame> changed = ID3v2::withDatesOfV23(withoutOriginals(reading->tag.frames));
  require(readBack(changed) == changed, "frames that are made anew come back");

  ID3v2::Tag tag{.version = 3, .frames = readBack(frames)};
  const auto [dropped, altered] = TagLosses::between(tag, tag);
  require(dropped.empty() && altered.empty(), "nothing is lost of what stays");
  TagSet fields = LosslessConversion::fieldsOf(tag);
  // White space before a zero byte is trimmed only once the zero byte is gone.
  for (TagSet once = fields.normalized(); once != fields; once = fields.normalized()) fields = once;
  LosslessConversion::setFields(tag, fields, TagFields::all);
  require(LosslessConversion::fieldsOf(tag) == fields, "fields that are set are read");
}
