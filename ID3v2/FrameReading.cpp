#include "ID3v2/FrameReading.h"

#include <string_view>

#include "ID3v2/ContentDecoding.h"
#include "ID3v2/FrameForm.h"
#include "ID3v2/Inflation.h"
#include "ID3v2/TextFields.h"
#include "ID3v2/Unsynchronisation.h"
#include "platform/base/Strings.h"

namespace ID3v2 {

namespace {

using platform::ByteView;
using platform::SharedBytes;

/// A chapter must not contain chapters. One more level is read for programs that nest them.
constexpr int deepestChapters = 2;

/// Returns the frame's identifier in v2.3, or nothing if it has none. Some programs have copied frames of
/// v2.2 into later tags, with a zero byte after the three letters.
std::optional<std::string> identifierInV23(const RawFrame& raw) {
  if (!raw.isOfV22()) return raw.identifier;
  const std::string_view three = std::string_view(raw.identifier).substr(0, 3);
  if (const auto four = fourLettersFor(three)) return std::string(*four);
  if (raw.identifier.size() == 4) return raw.identifier;
  return std::nullopt;
}

/// Returns the inflated content, or nothing if that fails. `bytes` are all bytes after the frame's header.
/// Also reads the v2.4 frames of programs that write the length without setting its flag, or set the flag
/// without writing the length.
std::optional<platform::Bytes> inflatedContent(const FrameForm& form, const SharedBytes& bytes,
                                               std::uint8_t version, std::size_t& budget) {
  constexpr std::size_t lengthSize = 4;
  if (auto inflated = inflate(form.content, budget)) return inflated;
  if (version != 4) return std::nullopt;
  const std::size_t size = form.content.size();
  if (form.length) return inflate(bytes.view().last(size + lengthSize), budget);
  if (size < lengthSize) return std::nullopt;
  return inflate(bytes.view().last(size - lengthSize), budget);
}

/// Returns the bytes with the frame's group byte in front of them, which is the form of opaque content.
SharedBytes withGroup(const FrameForm& form, const SharedBytes& bytes) {
  FrameForm grouped;
  grouped.group = form.group;
  grouped.content = bytes;
  return grouped.inV23().value_or(bytes);
}

/// Returns the name, in messages, of a frame that cannot be converted to v2.3.
std::string nameOf(const RawFrame& raw, std::uint8_t version) {
  const auto form = frameForm(raw.flags, raw.content, version);
  const std::string kind = form && form->isEncrypted    ? "encrypted "
                           : form && form->isCompressed ? "compressed "
                                                        : "";
  return "the " + kind + "frame " + raw.name();
}

std::string latin1(ByteView bytes) {
  return platform::Strings::fromLatin1(bytes);
}

}  // namespace

FrameReader::FrameReader(std::uint8_t version, bool areUnsynchronised, std::size_t tagSize)
    : version_(version), areUnsynchronised_(areUnsynchronised), inflationBudget_(inflationBudget(tagSize)) {
}

std::vector<Frame> FrameReader::read(const std::vector<RawFrame>& frames) {
  std::vector<Frame> read;
  read.reserve(frames.size());
  for (const RawFrame& raw : frames) {
    const auto identifier = identifierInV23(raw);
    if (!identifier) {
      if (raw.content.empty()) continue;
      unreadable_.push_back(
          {raw.name(), "the frame " + raw.name() + ", which ID3v2.3 has no counterpart for"});
      continue;
    }
    Frame frame{.identifier = *identifier, .content = Opaque{}};
    switch (readForm(raw, frame)) {
      case Outcome::read:
        read.push_back(std::move(frame));
        break;
      case Outcome::empty:
        // A frame without content has no meaning, but is written as it was.
        frame.content = Opaque{};
        if (!frame.original.empty()) read.push_back(std::move(frame));
        break;
      case Outcome::unreadable:
        unreadable_.push_back({*identifier, nameOf(raw, version_), !frame.original.empty()});
        frame.content = Unread{};
        if (!frame.original.empty()) read.push_back(std::move(frame));
        break;
    }
  }
  return read;
}

/// Returns the frame as it can be written into a tag of the same version that is not unsynchronised as a
/// whole. `bytes` are the frame's content without unsynchronisation.
SharedBytes FrameReader::originalOf(const RawFrame& raw, const SharedBytes& bytes) const {
  if (version_ == 2) return {};
  const bool isUndone = bytes.size() != raw.content.size() && !saysUnsynchronised(raw.flags, version_);
  if (raw.hasOwnSize && !isUndone) return raw.whole;
  // Frames inside a chapter are not rebuilt: the bytes of the chapter contain them.
  if (depth_ > 0) return {};
  constexpr std::size_t sizeOffset = 4;
  constexpr std::size_t flagsOffset = 8;
  const SharedBytes& content = isUndone ? bytes : raw.content;
  platform::Bytes rebuilt;
  rebuilt.reserve(raw.whole.size());
  platform::append(rebuilt, raw.whole.view().first(sizeOffset));
  platform::append(rebuilt, sizeField(content.size(), version_));
  platform::append(rebuilt, raw.whole.view().subspan(flagsOffset, 2));
  platform::append(rebuilt, content);
  return rebuilt;
}

/// Reads everything after the frame's identifier.
FrameReader::Outcome FrameReader::readForm(const RawFrame& raw, Frame& frame) {
  const bool isUnsynchronised =
      (areUnsynchronised_ && depth_ == 0) || saysUnsynchronised(raw.flags, version_);
  const SharedBytes bytes = isUnsynchronised && ID3v2::isUnsynchronised(raw.content)
                                ? SharedBytes(unsynchronisationUndone(raw.content))
                                : raw.content;
  frame.original = originalOf(raw, bytes);
  if (raw.content.empty()) return Outcome::empty;
  const auto form = frameForm(raw.flags, bytes, version_);
  if (!form) {
    // A v2.3 frame can be kept even if it is too short for the parts that its flags announce.
    frame.flags = raw.flags;
    frame.content = Opaque{bytes};
    return version_ == 3 ? Outcome::read : Outcome::unreadable;
  }
  SharedBytes content = form->content;
  auto inflated = form->isCompressed && !form->isEncrypted
                      ? inflatedContent(*form, bytes, version_, inflationBudget_)
                      : std::nullopt;
  if (form->isEncrypted || (form->isCompressed && !inflated)) {
    const auto inV23 = version_ == 3 ? std::optional(bytes) : form->inV23();
    if (!inV23) return Outcome::unreadable;
    frame.flags = form->flags();
    frame.content = Opaque{*inV23};
    return Outcome::read;
  }
  if (inflated) content = SharedBytes(std::move(*inflated));
  if (content.empty()) return Outcome::empty;
  auto decoded = readContent(frame.identifier, content);
  if (!decoded) return Outcome::unreadable;
  frame.flags = form->otherFlags;
  frame.content = std::move(*decoded);
  if (auto* opaque = std::get_if<Opaque>(&frame.content)) {
    opaque->bytes = withGroup(*form, opaque->bytes);
  } else {
    frame.group = form->group.value_or(0);
  }
  return Outcome::read;
}

/// Returns nothing for content that cannot be converted to v2.3.
std::optional<Content> FrameReader::readContent(const std::string& identifier, const SharedBytes& bytes) {
  const ContentKind kind = kindOf(identifier);
  if (kind != ContentKind::chapter && kind != ContentKind::tableOfContents) {
    return decodeContent(identifier, bytes, version_);
  }
  return kind == ContentKind::chapter ? readChapter(bytes) : readTableOfContents(bytes);
}

std::optional<Content> FrameReader::readChapter(const SharedBytes& bytes) {
  constexpr std::size_t numbersSize = 16;
  const Cut cut = cutAtZero(bytes);
  if (cut.rest.size() < numbersSize) return Opaque{bytes};
  const auto number = [&](std::size_t index) { return platform::bigEndian(cut.rest.subspan(4 * index, 4)); };
  Chapter chapter{.elementID = latin1(cut.text),
                  .startTime = number(0),
                  .endTime = number(1),
                  .startOffset = number(2),
                  .endOffset = number(3),
                  .frames = {}};
  return withFramesInside(std::move(chapter), bytes, cut.rest.size() - numbersSize);
}

std::optional<Content> FrameReader::readTableOfContents(const SharedBytes& bytes) {
  const Cut cut = cutAtZero(bytes);
  if (cut.rest.size() < 2) return Opaque{bytes};
  TableOfContents table{
      .elementID = latin1(cut.text), .flags = cut.rest[0], .childElementIDs = {}, .frames = {}};
  ByteView rest = cut.rest.subspan(2);
  for (std::uint8_t count = cut.rest[1]; count > 0; --count) {
    const Cut child = cutAtZero(rest);
    if (!child.isTerminated) return Opaque{bytes};
    table.childElementIDs.push_back(latin1(child.text));
    rest = child.rest;
  }
  return withFramesInside(std::move(table), bytes, rest.size());
}

/// Adds the frames in the last `size` of the bytes to the chapter or table of contents. If they cannot be
/// read, the whole content is opaque in v2.3; for other versions, returns nothing.
template <class Parent>
std::optional<Content> FrameReader::withFramesInside(Parent parent, const SharedBytes& bytes,
                                                     std::size_t size) {
  std::optional<Content> asItIs;
  if (version_ == 3) asItIs = Opaque{bytes};
  if (depth_ == deepestChapters) return asItIs;
  const FrameWalk walk = walkFrames(bytes, bytes.size() - size, version_, frameBudget_);
  if (!walk.isComplete) return asItIs;
  frameBudget_ -= walk.frames.size();
  const std::size_t unreadableBefore = unreadable_.size();
  ++depth_;
  parent.frames = read(walk.frames);
  --depth_;
  if (unreadable_.size() == unreadableBefore) return parent;
  unreadable_.resize(unreadableBefore);
  return asItIs;
}

}  // namespace ID3v2
