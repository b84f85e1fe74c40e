#include "QuillmarkKit/store/engine/RawFrames.h"

#include <algorithm>

#include "ID3v2/FrameForm.h"
#include "QuillmarkKit/model/TagField.h"
#include "QuillmarkKit/store/file/MP3File.h"
#include "QuillmarkKit/store/file/StoreErrors.h"
#include "platform/FileHandle.h"
#include "platform/FileReplacement.h"
#include "platform/base/Formats.h"

namespace QuillmarkKit {

using platform::Bytes;
using platform::ByteView;
using platform::FileHandle;
using platform::SharedBytes;
using platform::tagHeaderSize;

namespace ID3Frames {

namespace {

constexpr std::size_t frameHeaderSize = 10;
constexpr std::size_t identifierSize = 4;
constexpr std::uint8_t unsynchronisationFlag = 0x80;
constexpr std::uint8_t extendedHeaderFlag = 0x40;

std::uint32_t synchsafeAt(ByteView bytes, std::size_t offset) {
  return platform::numberFromSynchsafe(platform::bigEndian(bytes.subspan(offset, 4)));
}

/// Returns the size field of a frame header or an extended header, which is synchsafe from version 4 on.
std::uint32_t sizeAt(ByteView bytes, std::size_t offset, std::uint8_t version) {
  return version >= 4 ? synchsafeAt(bytes, offset) : platform::bigEndian(bytes.subspan(offset, 4));
}

struct Header {
  std::uint8_t version;
  std::uint8_t flags;
  std::uint64_t tagLength;
};

/// Returns nothing if the bytes do not start with a tag, or the tag is empty.
std::optional<Header> parseHeader(ByteView data) {
  if (data.size() < tagHeaderSize || !platform::charactersOf(data).starts_with("ID3")) return std::nullopt;
  const std::uint32_t size = synchsafeAt(data, 6);
  if (size == 0) return std::nullopt;
  return Header{.version = data[3], .flags = data[5], .tagLength = std::uint64_t{size} + tagHeaderSize};
}

/// Returns the length of the extended header at the start of the body, or nothing if it does not fit.
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

/// A frame at its place in the body of a tag.
struct FrameView {
  std::string_view id;
  std::uint16_t flags;
  std::size_t payloadStart;
  ByteView payload;
};

/// Calls `visit` for each frame of the body from `position` on, up to the first bytes that are not a frame or
/// do not fit.
template <class Visit>
void walk(ByteView body, std::uint64_t position, std::uint8_t version, Visit visit) {
  while (position + frameHeaderSize <= body.size()) {
    const auto start = static_cast<std::size_t>(position);
    const ByteView header = body.subspan(start, frameHeaderSize);
    const ByteView id = header.first(identifierSize);
    if (!isIdentifier(id)) return;
    const std::uint64_t size = sizeAt(header, identifierSize, version);
    const std::size_t payloadStart = start + frameHeaderSize;
    if (size == 0 || size > body.size() - payloadStart) return;
    visit(FrameView{.id = platform::charactersOf(id),
                    .flags = static_cast<std::uint16_t>(header[8] << 8 | header[9]),
                    .payloadStart = payloadStart,
                    .payload = body.subspan(payloadStart, static_cast<std::size_t>(size))});
    position = payloadStart + size;
  }
}

/// The body of a tag whose frames have not been parsed yet.
struct TagBody {
  Header header;
  SharedBytes bytes;
  std::uint64_t framesStart = 0;
};

/// Returns nothing if the bytes do not contain a whole tag.
std::optional<TagBody> parseBody(const SharedBytes& data) {
  const auto header = parseHeader(data);
  if (!header || data.size() < header->tagLength) return std::nullopt;
  TagBody body{
      .header = *header,
      .bytes = data.slice(tagHeaderSize, static_cast<std::size_t>(header->tagLength) - tagHeaderSize)};
  if ((header->flags & unsynchronisationFlag) != 0) body.bytes = ID3v2::unsynchronisationUndone(body.bytes);
  if ((header->flags & extendedHeaderFlag) != 0) {
    const auto length = extendedHeaderLength(body.bytes, header->version);
    if (!length) return std::nullopt;
    body.framesStart = *length;
  }
  return body;
}

/// Returns the bytes of the file at `path` that `parse` needs.
SharedBytes tagBytesOf(const std::filesystem::path& path) {
  return MP3File(FileHandle::forReading(path)).tagBytes();
}

void appendFrame(Bytes& bytes, std::string_view id, std::uint16_t flags, ByteView payload) {
  platform::append(bytes, platform::bytesOf(id));
  platform::append(bytes, platform::bigEndianBytes(static_cast<std::uint32_t>(payload.size())));
  bytes.push_back(static_cast<std::uint8_t>(flags >> 8));
  bytes.push_back(static_cast<std::uint8_t>(flags & 0xFF));
  platform::append(bytes, payload);
}

/// Returns the header of an ID3v2.3 tag with a body of `bodySize` bytes, and capacity for the body. Throws
/// ID3FrameError, which names `file`, if the body is too big. The frames of a body that fits always fit their
/// size fields, too.
Bytes tagStart(std::uint64_t bodySize, const std::filesystem::path& file) {
  if (bodySize >= platform::synchsafeLimit) throw ID3FrameError(ID3FrameError::Case::tagTooBig, file);
  Bytes tag;
  tag.reserve(tagHeaderSize + static_cast<std::size_t>(bodySize));
  tag = {'I', 'D', '3', 3, 0, 0};
  platform::append(tag, platform::bigEndianBytes(platform::synchsafe(static_cast<std::uint32_t>(bodySize))));
  return tag;
}

/// Writes the tag and the audio of `source`, and commits the replacement.
void assemble(platform::FileReplacement& replacement, const Bytes& tag, FileHandle& source,
              std::uint64_t audioStart) {
  replacement.file().write(tag);
  replacement.file().copy(source, audioStart);
  replacement.commit();
}

}  // namespace

std::vector<std::string_view> managed() {
  std::vector<std::string_view> identifiers;
  for (const TagField field : allTagFields) identifiers.push_back(frameIdentifier(field));
  std::ranges::sort(identifiers);
  identifiers.erase(std::ranges::unique(identifiers).begin(), identifiers.end());
  return identifiers;
}

std::optional<ParsedTag> parse(const SharedBytes& data) {
  const auto body = parseBody(data);
  if (!body) return std::nullopt;
  ParsedTag tag{.version = body->header.version, .frames = {}, .audioOffset = body->header.tagLength};
  walk(body->bytes, body->framesStart, body->header.version, [&](const FrameView& frame) {
    tag.frames.push_back({.id = std::string(frame.id),
                          .flags = frame.flags,
                          .payload = body->bytes.slice(frame.payloadStart, frame.payload.size())});
  });
  return tag;
}

std::vector<ID3Frame> unmanagedFrames(const std::filesystem::path& inFileAt) {
  try {
    auto tag = parse(tagBytesOf(inFileAt));
    if (!tag) return {};
    std::erase_if(tag->frames, [](const ID3Frame& frame) { return isFieldFrame(frame.id); });
    return std::move(tag->frames);
  } catch (const std::exception&) {
    return {};
  }
}

template <class Visit>
void UnmanagedFrames::forEach(Visit visit) const {
  walk(body_, framesStart_, version_, [&](const FrameView& frame) {
    if (!isFieldFrame(frame.id)) visit(frame);
  });
}

UnmanagedFrames::UnmanagedFrames(const SharedBytes& tag) {
  auto body = parseBody(tag);
  if (!body) return;
  body_ = std::move(body->bytes);
  framesStart_ = body->framesStart;
  audioStart_ = body->header.tagLength;
  version_ = body->header.version;
  forEach([&](const FrameView& frame) { size_ += frameHeaderSize + frame.payload.size(); });
}

void UnmanagedFrames::appendTo(Bytes& bytes) const {
  forEach([&](const FrameView& frame) { appendFrame(bytes, frame.id, frame.flags, frame.payload); });
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
  tag.resize(tagHeaderSize + static_cast<std::size_t>(bodySize));
  return tag;
}

void appendTo(Bytes& tag, const UnmanagedFrames& frames, const std::filesystem::path& file) {
  const auto header = parseHeader(tag);
  if (!header || header->version != 3 || header->flags != 0 || header->tagLength != tag.size()) {
    throw ID3FrameError(ID3FrameError::Case::unreadableTag, file);
  }
  std::size_t framesEnd = tagHeaderSize;
  walk(tag, tagHeaderSize, header->version,
       [&](const FrameView& frame) { framesEnd = frame.payloadStart + frame.payload.size(); });
  const Bytes newHeader = tagStart(framesEnd - tagHeaderSize + frames.size(), file);
  tag.resize(framesEnd);
  frames.appendTo(tag);
  std::ranges::copy(newHeader, tag.begin());
}

Bytes tagData(const UnmanagedFrames& frames, const std::filesystem::path& file) {
  Bytes tag = tagStart(frames.size(), file);
  frames.appendTo(tag);
  return tag;
}

void append(const std::vector<ID3Frame>& frames, const std::filesystem::path& toFileAt) {
  if (frames.empty()) return;
  MP3File file(FileHandle::forReading(toFileAt));
  auto tag = parse(file.tagBytes());
  if (!tag) throw ID3FrameError(ID3FrameError::Case::unreadableTag, toFileAt);
  tag->frames.insert(tag->frames.end(), frames.begin(), frames.end());
  const Bytes extended = tagData(tag->frames, 0, toFileAt);
  platform::FileReplacement replacement(file.handle());
  assemble(replacement, extended, file.handle(), tag->audioOffset);
}

void write(const std::vector<ID3Frame>& frames, const std::filesystem::path& withAudioFrom,
           const std::filesystem::path& to) {
  MP3File source(FileHandle::forReading(withAudioFrom));
  const auto body = parseBody(source.tagBytes());
  const Bytes tag = tagData(frames, 0, to);
  platform::FileReplacement replacement(to);
  assemble(replacement, tag, source.handle(), body ? body->header.tagLength : 0);
}

}  // namespace ID3Frames

}  // namespace QuillmarkKit
