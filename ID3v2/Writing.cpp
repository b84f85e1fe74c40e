#include "ID3v2/Writing.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <variant>

#include "ID3v2/FrameForm.h"
#include "ID3v2/FrameWalk.h"
#include "ID3v2/TextFields.h"
#include "platform/base/Formats.h"
#include "platform/base/Strings.h"

namespace ID3v2 {

namespace {

using platform::Bytes;

/// The largest number that the size field of a tag's header can represent.
constexpr std::size_t greatestBodySize = platform::synchsafeLimit - 1;

void appendByte(Bytes& bytes, TextEncoding encoding) {
  bytes.push_back(static_cast<std::uint8_t>(encoding));
}

void overwrite(Bytes& bytes, std::size_t at, platform::ByteView field) {
  std::ranges::copy(field, bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

class TagWriter {
 public:
  explicit TagWriter(std::uint8_t version) : version_(version) {}

  std::uint8_t version() const { return version_; }

  void appendFrames(const std::vector<Frame>& frames) {
    for (const Frame& frame : frames) appendFrame(frame);
  }

  Bytes bytes;
  std::vector<std::string> notKept;

 private:
  void appendFrame(const Frame& frame) {
    if (!frame.original.empty()) {
      platform::append(bytes, frame.original);
      return;
    }
    const std::size_t start = bytes.size();
    platform::append(bytes, platform::bytesOf(frame.identifier));
    const bool isOpaque = std::holds_alternative<Opaque>(frame.content);
    const std::uint16_t flags =
        version_ == 4 ? std::uint16_t{0}
        : isOpaque    ? frame.flags
                      : static_cast<std::uint16_t>(frame.flags & ~(compressionFlag | encryptionFlag));
    appendNumber(0);
    bytes.push_back(static_cast<std::uint8_t>(flags >> 8));
    bytes.push_back(static_cast<std::uint8_t>(flags & 0xFF));
    const std::size_t contentStart = bytes.size();
    if (!isOpaque && (flags & groupingFlag) != 0) bytes.push_back(frame.group);
    const bool isWritten = frame.identifier.size() == 4 &&
                           std::visit([this](const auto& content) { return append(content); }, frame.content);
    const std::size_t size = bytes.size() - contentStart;
    if (!isWritten || size > greatestBodySize) {
      bytes.resize(start);
      notKept.push_back("the frame " + frame.identifier);
      return;
    }
    overwrite(bytes, start + 4, sizeField(size, version_));
  }

  TextEncoding encodingOf(std::initializer_list<std::string_view> texts) const {
    return encodingFor(texts, version_);
  }
  TextEncoding encodingForLast(std::string_view text, std::string_view description) const {
    if (!text.empty()) return encodingOf({description, text});
    return version_ == 4 ? TextEncoding::UTF8 : TextEncoding::UTF16;
  }

  // Each of these returns whether the version can represent the content.

  bool append(const Unread&) { return false; }

  bool append(const Opaque& content) {
    platform::append(bytes, content.bytes);
    return true;
  }

  bool append(const Text& content) {
    const TextEncoding encoding = encodingOf({content.text});
    appendByte(bytes, encoding);
    appendLastText(bytes, encoding, content.text);
    return true;
  }

  // An empty last text is not written in Latin-1: readers would take its bytes for padding and drop the
  // frame.

  bool append(const UserText& content) {
    const TextEncoding encoding = encodingForLast(content.text, content.description);
    appendByte(bytes, encoding);
    appendTerminated(bytes, encoding, content.description);
    appendLastText(bytes, encoding, content.text);
    return true;
  }

  bool append(const LanguageText& content) {
    const TextEncoding encoding = encodingForLast(content.text, content.description);
    appendByte(bytes, encoding);
    platform::append(bytes, platform::bytesOf(content.language));
    appendTerminated(bytes, encoding, content.description);
    appendLastText(bytes, encoding, content.text);
    return content.language.size() == 3;
  }

  bool append(const Picture& content) {
    const TextEncoding encoding = encodingOf({content.description});
    appendByte(bytes, encoding);
    const bool isWritten = appendLatin1(content.mimeType);
    bytes.push_back(0);
    bytes.push_back(content.type);
    appendTerminated(bytes, encoding, content.description);
    platform::append(bytes, content.data);
    return isWritten;
  }

  bool append(const URL& content) {
    // A frame must not be empty. Readers ignore the zero byte and anything after it.
    if (content.url.empty()) bytes.push_back(0);
    return appendLatin1(content.url);
  }

  bool append(const Chapter& content) {
    if (!appendElementID(content.elementID)) return false;
    for (const std::uint32_t number :
         {content.startTime, content.endTime, content.startOffset, content.endOffset}) {
      appendNumber(number);
    }
    appendFrames(content.frames);
    return true;
  }

  bool append(const TableOfContents& content) {
    if (!appendElementID(content.elementID)) return false;
    const std::size_t count = content.childElementIDs.size();
    bytes.push_back(content.flags);
    bytes.push_back(static_cast<std::uint8_t>(count));
    for (const std::string& child : content.childElementIDs) {
      if (!appendElementID(child)) return false;
    }
    appendFrames(content.frames);
    return count <= std::numeric_limits<std::uint8_t>::max();
  }

  void appendNumber(std::uint32_t number) { platform::append(bytes, platform::bigEndianBytes(number)); }

  bool appendLatin1(std::string_view text) {
    const auto encoded = platform::Strings::toLatin1(text);
    if (encoded) platform::append(bytes, *encoded);
    return encoded.has_value();
  }

  bool appendElementID(std::string_view elementID) {
    const bool isWritten = appendLatin1(elementID);
    bytes.push_back(0);
    return isWritten;
  }

  std::uint8_t version_;
};

/// Returns an estimate of the tag's size, so that a long tag is not copied while it grows.
std::size_t expectedSize(const std::vector<Frame>& frames) {
  constexpr std::size_t usualSize = 256;
  std::size_t size = 0;
  for (const Frame& frame : frames) {
    size += frame.original.size() + usualSize;
    if (!frame.original.empty()) continue;
    if (const auto* picture = std::get_if<Picture>(&frame.content)) size += picture->data.size();
    if (const auto* opaque = std::get_if<Opaque>(&frame.content)) size += opaque->bytes.size();
  }
  return size;
}

}  // namespace

Written write(const Tag& tag, const Padding& padding) {
  TagWriter writer(tag.version == 4 ? 4 : 3);
  const std::uint8_t flags = tag.isExperimental ? experimentalFlag : 0;
  constexpr std::size_t usualPadding = 0x2000;
  writer.bytes.reserve(tagHeaderSize + expectedSize(tag.frames) + usualPadding);
  writer.bytes = {'I', 'D', '3', writer.version(), 0, flags, 0, 0, 0, 0};
  writer.appendFrames(tag.frames);
  const std::size_t framesSize = writer.bytes.size() - tagHeaderSize;
  if (framesSize > greatestBodySize) {
    writer.notKept.emplace_back("a tag of more than 256 MiB");
    return {.bytes = {}, .notKept = std::move(writer.notKept)};
  }
  const std::size_t size = framesSize + std::min(padding(writer.bytes.size()), greatestBodySize - framesSize);
  writer.bytes.resize(tagHeaderSize + size);
  overwrite(writer.bytes, 6, platform::bigEndianBytes(platform::synchsafe(static_cast<std::uint32_t>(size))));
  return {.bytes = std::move(writer.bytes), .notKept = std::move(writer.notKept)};
}

}  // namespace ID3v2
