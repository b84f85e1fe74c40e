#include "ID3v2/FrameReading.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ID3v2/FrameForm.h"
#include "ID3v2/Identifiers.h"
#include "ID3v2/Tag.h"
#include "ID3v2/TextFields.h"
#include "platform/base/Strings.h"

namespace ID3v2 {

/// Returns the content of a frame of any kind except chapters and tables of contents. `bytes` are the content
/// in the given version, without compression, encryption and grouping data. Content that does not have the
/// layout of its kind, or contains a text that is invalid in its encoding, is opaque. Opaque content is in
/// the form of v2.3; returns nothing if it cannot be converted to that form.
std::optional<Content> decodeContent(std::string_view identifier, const platform::SharedBytes& bytes,
                                     std::uint8_t version);

namespace {

using platform::ByteView;
using platform::SharedBytes;

std::optional<Content> decodeText(TextDecoder decoder, ByteView content) {
  auto text = decoder.values(content);
  if (!text) return std::nullopt;
  return Text{std::move(*text)};
}

std::optional<Content> decodeUserText(TextDecoder decoder, ByteView content) {
  const Cut cut = decoder.cut(content);
  auto description = decoder.text(cut.text);
  auto text = decoder.values(cut.rest);
  if (!cut.isTerminated || !description || !text) return std::nullopt;
  return UserText{.description = std::move(*description), .text = std::move(*text)};
}

std::optional<Content> decodeLanguageText(TextDecoder decoder, ByteView content) {
  constexpr std::size_t languageSize = 3;
  if (content.size() < languageSize) return std::nullopt;
  const Cut cut = decoder.cut(content.subspan(languageSize));
  auto description = decoder.text(cut.text);
  auto text = decoder.values(cut.rest);
  if (!cut.isTerminated || !description || !text) return std::nullopt;
  return LanguageText{.language = std::string(platform::charactersOf(content.first(languageSize))),
                      .description = std::move(*description),
                      .text = std::move(*text)};
}

/// Returns the MIME type for a picture format of v2.2 (ID3v2.2.0 §4.15). An unknown format becomes "image/"
/// and its letters. "-->" means in both versions that the data is a link to the picture.
std::string mimeTypeFor(ByteView format) {
  std::string letters = platform::Strings::fromLatin1(cutAtZero(format).text);
  if (letters == "-->") return letters;
  std::ranges::transform(letters, letters.begin(), platform::Strings::toASCIILower);
  return "image/" + (letters == "jpg" ? "jpeg" : letters);
}

std::optional<Content> decodePicture(TextDecoder decoder, const SharedBytes& bytes, ByteView content,
                                     std::uint8_t version) {
  constexpr std::size_t formatSize = 3;
  Picture picture;
  ByteView rest;
  if (version == 2) {
    if (content.size() < formatSize) return std::nullopt;
    picture.mimeType = mimeTypeFor(content.first(formatSize));
    rest = content.subspan(formatSize);
  } else {
    const Cut mimeType = cutAtZero(content);
    picture.mimeType = platform::Strings::fromLatin1(mimeType.text);
    rest = mimeType.rest;
  }
  if (rest.empty()) return std::nullopt;
  picture.type = rest[0];
  const Cut cut = decoder.cut(rest.subspan(1));
  auto description = decoder.text(cut.text);
  if (!cut.isTerminated || !description) return std::nullopt;
  picture.description = std::move(*description);
  picture.data = bytes.slice(bytes.size() - cut.rest.size(), cut.rest.size());
  return picture;
}

/// LINK identifies a frame by its identifier, which has three letters in v2.2.
std::optional<Content> decodeLinkOfV22(ByteView content) {
  if (content.size() < 3) return std::nullopt;
  const auto identifier = fourLettersFor(platform::charactersOf(content.first(3)));
  if (!identifier) return std::nullopt;
  platform::Bytes bytes;
  platform::append(bytes, platform::bytesOf(*identifier));
  platform::append(bytes, content.subspan(3));
  return Opaque{std::move(bytes)};
}

std::optional<Content> decodeWithEncoding(ContentKind kind, const SharedBytes& bytes, std::uint8_t version) {
  if (bytes.empty()) return std::nullopt;
  const auto decoder = TextDecoder::forEncoding(bytes.view()[0]);
  if (!decoder) return std::nullopt;
  const ByteView content = bytes.view().subspan(1);
  switch (kind) {
    case ContentKind::text:
      return decodeText(*decoder, content);
    case ContentKind::userText:
      return decodeUserText(*decoder, content);
    case ContentKind::languageText:
      return decodeLanguageText(*decoder, content);
    case ContentKind::picture:
      return decodePicture(*decoder, bytes, content, version);
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<Content> decodeContent(std::string_view identifier, const SharedBytes& bytes,
                                     std::uint8_t version) {
  const ContentKind kind = kindOf(identifier);
  if (version == 2 && identifier == "LINK") return decodeLinkOfV22(bytes);
  if (kind == ContentKind::opaque) return Opaque{bytes};
  if (kind == ContentKind::url) {
    std::string url = platform::Strings::fromLatin1(bytes);
    url.erase(url.find_last_not_of('\0') + 1);
    return URL{std::move(url)};
  }
  if (auto content = decodeWithEncoding(kind, bytes, version)) return content;
  if (version == 2 && kind == ContentKind::picture) return std::nullopt;
  return Opaque{bytes};
}

namespace {

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
