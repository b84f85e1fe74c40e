#include "QuillmarkKit/store/ID3Frames.h"

#include <algorithm>
#include <array>

#include "ID3v2/Unsynchronisation.h"
#include "QuillmarkKit/store/ID3FrameError.h"
#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/FileReplacement.h"

namespace QuillmarkKit {

using platform::Bytes;
using platform::ByteView;
using platform::FileHandle;
using platform::SharedBytes;

namespace ID3Frames {

namespace {

constexpr std::size_t tagHeaderSize = 10;
constexpr std::size_t frameHeaderSize = 10;
constexpr std::size_t identifierSize = 4;
constexpr std::uint8_t unsynchronisationFlag = 0x80;
constexpr std::uint8_t extendedHeaderFlag = 0x40;

std::uint32_t synchsafeAt(ByteView bytes, std::size_t offset) {
  return platform::numberFromSynchsafe(platform::bigEndian(bytes.subspan(offset, 4)));
}

/// A size as frames and extended headers tell it: synchsafe from version 4 on.
std::uint32_t sizeAt(ByteView bytes, std::size_t offset, std::uint8_t version) {
  return version >= 4 ? synchsafeAt(bytes, offset) : platform::bigEndian(bytes.subspan(offset, 4));
}

struct Header {
  std::uint8_t version;
  std::uint8_t flags;
  std::uint64_t tagLength;
};

/// Nothing when the bytes do not start with a tag that holds something.
std::optional<Header> parseHeader(ByteView data) {
  if (data.size() < tagHeaderSize || !platform::charactersOf(data).starts_with("ID3")) return std::nullopt;
  const std::uint32_t size = synchsafeAt(data, 6);
  if (size == 0) return std::nullopt;
  return Header{.version = data[3], .flags = data[5], .tagLength = std::uint64_t{size} + tagHeaderSize};
}

/// The length of the extended header at the start of the body; nothing when it does not fit.
std::optional<std::uint64_t> extendedHeaderLength(ByteView body, std::uint8_t version) {
  if (body.size() < 4) return std::nullopt;
  const std::uint64_t length = std::uint64_t{sizeAt(body, 0, version)} + (version >= 4 ? 0 : 4);
  if (length == 0 || length > body.size()) return std::nullopt;
  return length;
}

bool isIdentifier(ByteView id) {
  return std::ranges::all_of(id,
                             [](std::uint8_t c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
}

/// One frame in its tag.
struct FrameView {
  std::string_view id;
  std::uint16_t flags;
  std::size_t payloadStart;
  ByteView payload;
};

/// Calls `visit` for each frame of the body from `position` on, up to the first one that does not fit or is
/// none.
template <class Visit>
void walk(ByteView body, std::uint64_t position, std::uint8_t version, Visit visit) {
  while (position + frameHeaderSize <= body.size()) {
    const ByteView header = body.subspan(position, frameHeaderSize);
    const ByteView id = header.first(identifierSize);
    if (!isIdentifier(id)) return;
    const std::uint64_t size = sizeAt(header, identifierSize, version);
    const std::uint64_t payloadStart = position + frameHeaderSize;
    if (size == 0 || size > body.size() - payloadStart) return;
    visit(FrameView{.id = platform::charactersOf(id),
                    .flags = static_cast<std::uint16_t>(header[8] << 8 | header[9]),
                    .payloadStart = payloadStart,
                    .payload = body.subspan(payloadStart, size)});
    position = payloadStart + size;
  }
}

/// A tag's frames, still to be walked.
struct TagBody {
  Header header;
  SharedBytes bytes;
  std::uint64_t framesStart = 0;

  template <class Visit>
  void forEachFrame(Visit visit) const {
    walk(bytes, framesStart, header.version, visit);
  }
};

/// Nothing when the bytes do not hold a whole tag.
std::optional<TagBody> parseBody(const SharedBytes& data) {
  const auto header = parseHeader(data);
  if (!header || data.size() < header->tagLength) return std::nullopt;
  TagBody body{.header = *header, .bytes = data.slice(tagHeaderSize, header->tagLength - tagHeaderSize)};
  if ((header->flags & unsynchronisationFlag) != 0) body.bytes = ID3v2::unsynchronisationUndone(body.bytes);
  if ((header->flags & extendedHeaderFlag) != 0) {
    const auto length = extendedHeaderLength(body.bytes, header->version);
    if (!length) return std::nullopt;
    body.framesStart = *length;
  }
  return body;
}

/// The bytes of the file's tag, or nothing when it has none; leaves the reading position unspecified.
std::optional<SharedBytes> tagBytes(FileHandle& file) {
  const auto header = parseHeader(file.start());
  // A size field alone must not allocate: what the file does not have is not asked for.
  if (!header || header->tagLength > file.size()) return std::nullopt;
  Bytes bytes;
  bytes.reserve(header->tagLength);
  platform::append(bytes, file.start().first(tagHeaderSize));
  file.seek(tagHeaderSize);
  file.readExactlyOnto(bytes, header->tagLength - tagHeaderSize);
  return SharedBytes(std::move(bytes));
}

std::optional<TagBody> bodyOfTagIn(FileHandle& file) {
  const auto bytes = tagBytes(file);
  return bytes ? parseBody(*bytes) : std::nullopt;
}

void appendFrame(Bytes& bytes, std::string_view id, std::uint16_t flags, ByteView payload) {
  platform::append(bytes, platform::bytesOf(id));
  platform::append(bytes, platform::bigEndianBytes(static_cast<std::uint32_t>(payload.size())));
  bytes.push_back(static_cast<std::uint8_t>(flags >> 8));
  bytes.push_back(static_cast<std::uint8_t>(flags & 0xFF));
  platform::append(bytes, payload);
}

/// An ID3v2.3 tag header in front of what will be `bodySize` bytes, with room for them. Throws ID3FrameError,
/// which names `file`, for more than a tag can hold; less than that always fits the size field of a frame.
Bytes tagStart(std::uint64_t bodySize, const std::filesystem::path& file) {
  constexpr std::uint64_t bodyLimit = std::uint64_t{1} << 28;
  if (bodySize >= bodyLimit) throw ID3FrameError(ID3FrameError::Case::tagTooBig, file);
  Bytes tag;
  tag.reserve(tagHeaderSize + bodySize);
  tag = {'I', 'D', '3', 3, 0, 0};
  platform::append(tag, platform::bigEndianBytes(platform::synchsafe(static_cast<std::uint32_t>(bodySize))));
  return tag;
}

/// Puts the new tag and the audio behind the old one together.
void assemble(platform::FileReplacement& replacement, const Bytes& tag, FileHandle& source,
              std::uint64_t audioStart) {
  replacement.file().write(tag);
  replacement.file().copy(source, audioStart);
  replacement.commit();
}

}  // namespace

bool isManaged(std::string_view id) {
  return std::ranges::binary_search(managed(), id);
}

std::optional<ParsedTag> parse(const SharedBytes& data) {
  const auto body = parseBody(data);
  if (!body) return std::nullopt;
  ParsedTag tag{.version = body->header.version, .frames = {}, .audioOffset = body->header.tagLength};
  body->forEachFrame([&](const FrameView& frame) {
    tag.frames.push_back({.id = std::string(frame.id),
                          .flags = frame.flags,
                          .payload = body->bytes.slice(frame.payloadStart, frame.payload.size())});
  });
  return tag;
}

std::vector<ID3Frame> unmanagedFrames(const std::filesystem::path& inFileAt) {
  try {
    FileHandle file = FileHandle::forReading(inFileAt);
    const auto bytes = tagBytes(file);
    auto tag = bytes ? parse(*bytes) : std::nullopt;
    if (!tag) return {};
    std::erase_if(tag->frames, [](const ID3Frame& frame) { return isManaged(frame.id); });
    return std::move(tag->frames);
  } catch (const platform::FileError&) {
    return {};
  }
}

FrameData unmanagedFrameData(FileHandle& file) {
  FrameData unmanaged;
  const auto body = bodyOfTagIn(file);
  if (!body) return unmanaged;
  unmanaged.audioStart = body->header.tagLength;
  body->forEachFrame([&](const FrameView& frame) {
    if (!isManaged(frame.id)) appendFrame(unmanaged.bytes, frame.id, frame.flags, frame.payload);
  });
  return unmanaged;
}

Bytes tagData(const std::vector<ID3Frame>& frames, std::int64_t padding, const std::filesystem::path& file) {
  const auto isWritten = [](const ID3Frame& frame) { return frame.id.size() == identifierSize; };
  auto bodySize = static_cast<std::uint64_t>(std::max<std::int64_t>(padding, 0));
  for (const ID3Frame& frame : frames) {
    if (isWritten(frame)) bodySize += frameHeaderSize + frame.payload.size();
  }
  Bytes tag = tagStart(bodySize, file);
  for (const ID3Frame& frame : frames) {
    if (isWritten(frame)) appendFrame(tag, frame.id, frame.flags, frame.payload);
  }
  tag.resize(tagHeaderSize + bodySize);
  return tag;
}

Bytes appending(const FrameData& frames, const SharedBytes& tag, const std::filesystem::path& file) {
  const auto body = parseBody(tag);
  if (!body) throw ID3FrameError(ID3FrameError::Case::unreadableTag, file);
  std::uint64_t bodySize = frames.bytes.size();
  body->forEachFrame([&](const FrameView& frame) { bodySize += frameHeaderSize + frame.payload.size(); });
  Bytes extended = tagStart(bodySize, file);
  body->forEachFrame(
      [&](const FrameView& frame) { appendFrame(extended, frame.id, frame.flags, frame.payload); });
  platform::append(extended, frames.bytes);
  return extended;
}

Bytes tagData(const FrameData& frames, const std::filesystem::path& file) {
  Bytes tag = tagStart(frames.bytes.size(), file);
  platform::append(tag, frames.bytes);
  return tag;
}

void append(const std::vector<ID3Frame>& frames, const std::filesystem::path& toFileAt) {
  if (frames.empty()) return;
  FrameData data{.bytes = tagData(frames, 0, toFileAt)};
  data.bytes.erase(data.bytes.begin(), data.bytes.begin() + tagHeaderSize);
  FileHandle file = FileHandle::forReading(toFileAt);
  const auto tag = tagBytes(file);
  if (!tag) throw ID3FrameError(ID3FrameError::Case::unreadableTag, toFileAt);
  const Bytes extended = appending(data, *tag, toFileAt);
  platform::FileReplacement replacement(file);
  assemble(replacement, extended, file, tag->size());
}

void write(const std::vector<ID3Frame>& frames, const std::filesystem::path& withAudioFrom,
           const std::filesystem::path& to) {
  FileHandle source = FileHandle::forReading(withAudioFrom);
  const auto body = bodyOfTagIn(source);
  const Bytes tag = tagData(frames, 0, to);
  platform::FileReplacement replacement(to);
  assemble(replacement, tag, source, body ? body->header.tagLength : 0);
}

}  // namespace ID3Frames

}  // namespace QuillmarkKit
