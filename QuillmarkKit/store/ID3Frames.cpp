#include "QuillmarkKit/store/ID3Frames.h"

#include <algorithm>
#include <array>

#include "QuillmarkKit/store/ID3FrameError.h"
#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/FileManager.h"

namespace QuillmarkKit {

using platform::Bytes;
using platform::ByteView;
using platform::FileHandle;
using platform::SharedBytes;
namespace FileManager = platform::FileManager;

ID3FrameError ID3FrameError::unreadableTag(const std::filesystem::path& url) {
  return ID3FrameError(platform::lastPathComponent(url) +
                       ": the ID3 tag could not be read back after writing.");
}

ID3FrameError ID3FrameError::tagTooBig(const std::filesystem::path& url) {
  return ID3FrameError(platform::lastPathComponent(url) +
                       ": its tag would be larger than 256 MiB, more than an ID3 tag can hold.");
}

namespace ID3Frames {

namespace {

constexpr std::size_t tagHeaderSize = 10;
constexpr std::size_t frameHeaderSize = 10;
constexpr std::size_t identifierSize = 4;
constexpr std::uint8_t unsynchronisationFlag = 0x80;
constexpr std::uint8_t extendedHeaderFlag = 0x40;

// In ascending order.
constexpr std::array managed = std::to_array<std::string_view>({
    "APIC", "COMM", "TALB", "TBPM", "TCOM", "TCON", "TCOP", "TENC", "TEXT", "TIT1", "TIT2",
    "TIT3", "TKEY", "TOWN", "TPE1", "TPE2", "TPE3", "TPOS", "TPUB", "TRCK", "TYER", "USLT",
});

std::uint32_t bigEndian(ByteView field) {
  return std::uint32_t{field[0]} << 24 | std::uint32_t{field[1]} << 16 | std::uint32_t{field[2]} << 8 |
         field[3];
}

std::uint32_t synchsafe(ByteView field) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : field.first(4)) value = value << 7 | (byte & 0x7FU);
  return value;
}

struct Header {
  std::uint8_t version;
  std::uint8_t flags;
  std::uint64_t tagLength;
};

/// Nothing when the bytes do not start with a tag that holds something.
std::optional<Header> parseHeader(ByteView data) {
  if (data.size() < tagHeaderSize || !platform::charactersOf(data).starts_with("ID3")) return std::nullopt;
  const std::uint32_t size = synchsafe(data.subspan(6));
  if (size == 0) return std::nullopt;
  return Header{.version = data[3], .flags = data[5], .tagLength = std::uint64_t{size} + tagHeaderSize};
}

/// Drops each zero byte that follows an FF byte (ID3v2.3.0 §5).
Bytes deunsynchronise(ByteView bytes) {
  Bytes plain;
  plain.reserve(bytes.size());
  bool behindFF = false;
  for (const std::uint8_t byte : bytes) {
    if (!(behindFF && byte == 0x00)) plain.push_back(byte);
    behindFF = byte == 0xFF;
  }
  return plain;
}

/// The length of the extended header at the start of the body; nothing when it does not fit.
std::optional<std::uint64_t> extendedHeaderLength(ByteView body, std::uint8_t version) {
  if (body.size() < 4) return std::nullopt;
  const std::uint64_t length = version >= 4 ? synchsafe(body) : std::uint64_t{bigEndian(body)} + 4;
  if (length == 0 || length > body.size()) return std::nullopt;
  return length;
}

bool isIdentifier(ByteView id) {
  return std::ranges::all_of(id,
                             [](std::uint8_t c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); });
}

std::vector<ID3Frame> walk(const SharedBytes& body, std::uint64_t position, std::uint8_t version) {
  const ByteView bytes = body;
  std::vector<ID3Frame> frames;
  while (position + frameHeaderSize <= bytes.size()) {
    const ByteView header = bytes.subspan(position, frameHeaderSize);
    const ByteView id = header.first(identifierSize);
    if (!isIdentifier(id)) break;
    const std::uint64_t size = version >= 4 ? synchsafe(header.subspan(4)) : bigEndian(header.subspan(4));
    const std::uint64_t payloadStart = position + frameHeaderSize;
    if (size == 0 || size > bytes.size() - payloadStart) break;
    frames.push_back({.id = std::string(platform::charactersOf(id)),
                      .flags = static_cast<std::uint16_t>(header[8] << 8 | header[9]),
                      .payload = body.slice(payloadStart, size)});
    position = payloadStart + size;
  }
  return frames;
}

/// The bytes of the file's tag, or nothing when it has none; leaves the file open at an unspecified position.
std::optional<SharedBytes> tagBytes(FileHandle& file) {
  Bytes bytes = file.read(tagHeaderSize);
  const auto header = parseHeader(bytes);
  // A size field alone must not allocate: what the file does not have is not asked for.
  if (!header || header->tagLength > file.size()) return std::nullopt;
  file.readOnto(bytes, header->tagLength - tagHeaderSize);
  return SharedBytes(std::move(bytes));
}

std::optional<ParsedTag> parseTagOf(FileHandle& file) {
  const auto bytes = tagBytes(file);
  return bytes ? parse(*bytes) : std::nullopt;
}

void appendBigEndian(Bytes& bytes, std::uint32_t value) {
  for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

void appendSynchsafe(Bytes& bytes, std::uint32_t value) {
  for (const int shift : {21, 14, 7, 0}) bytes.push_back(static_cast<std::uint8_t>(value >> shift & 0x7F));
}

/// The new tag and the audio behind the old one, put together in the place of `to`.
void writeTagWithAudio(const Bytes& tag, FileHandle& source, std::uint64_t audioOffset,
                       const std::filesystem::path& to) {
  FileManager::writeAtomically(to, [&](FileHandle& target) {
    target.write(tag);
    target.copy(source, audioOffset);
  });
}

}  // namespace

bool isManaged(std::string_view id) {
  return std::ranges::binary_search(managed, id);
}

std::optional<ParsedTag> parse(const SharedBytes& data) {
  const auto header = parseHeader(data);
  if (!header || data.size() < header->tagLength) return std::nullopt;
  SharedBytes body = data.slice(tagHeaderSize, header->tagLength - tagHeaderSize);
  if ((header->flags & unsynchronisationFlag) != 0) body = deunsynchronise(body);
  std::uint64_t start = 0;
  if ((header->flags & extendedHeaderFlag) != 0) {
    const auto length = extendedHeaderLength(body, header->version);
    if (!length) return std::nullopt;
    start = *length;
  }
  return ParsedTag{.version = header->version,
                   .frames = walk(body, start, header->version),
                   .audioOffset = header->tagLength};
}

std::vector<ID3Frame> unmanagedFrames(FileHandle& file) {
  auto tag = parseTagOf(file);
  if (!tag) return {};
  std::vector<ID3Frame> frames = std::move(tag->frames);
  std::erase_if(frames, [](const ID3Frame& frame) { return isManaged(frame.id); });
  // The few bytes that are kept must not keep the whole tag in memory.
  Bytes kept;
  for (const ID3Frame& frame : frames) platform::append(kept, frame.payload);
  const SharedBytes payloads = std::move(kept);
  std::size_t position = 0;
  for (ID3Frame& frame : frames) {
    frame.payload = payloads.slice(position, frame.payload.size());
    position += frame.payload.size();
  }
  return frames;
}

std::vector<ID3Frame> unmanagedFrames(const std::filesystem::path& inFileAt) {
  try {
    FileHandle file = FileHandle::forReading(inFileAt);
    return unmanagedFrames(file);
  } catch (const platform::FileError&) {
    return {};
  }
}

Bytes tagData(const std::vector<ID3Frame>& frames, std::size_t padding, const std::filesystem::path& file) {
  constexpr std::uint64_t bodyLimit = std::uint64_t{1} << 28;
  const auto isWritten = [](const ID3Frame& frame) { return frame.id.size() == identifierSize; };
  std::uint64_t bodySize = padding;
  for (const ID3Frame& frame : frames) {
    if (isWritten(frame)) bodySize += frameHeaderSize + frame.payload.size();
    if (bodySize >= bodyLimit) throw ID3FrameError::tagTooBig(file);
  }
  if (bodySize >= bodyLimit) throw ID3FrameError::tagTooBig(file);

  Bytes tag{'I', 'D', '3', 3, 0, 0};
  tag.reserve(tagHeaderSize + bodySize);
  appendSynchsafe(tag, static_cast<std::uint32_t>(bodySize));
  for (const ID3Frame& frame : frames) {
    if (!isWritten(frame)) continue;
    platform::append(tag, platform::bytesOf(frame.id));
    appendBigEndian(tag, static_cast<std::uint32_t>(frame.payload.size()));
    tag.push_back(static_cast<std::uint8_t>(frame.flags >> 8));
    tag.push_back(static_cast<std::uint8_t>(frame.flags & 0xFF));
    platform::append(tag, frame.payload);
  }
  tag.resize(tagHeaderSize + bodySize);
  return tag;
}

Bytes appending(const std::vector<ID3Frame>& frames, const SharedBytes& tag,
                const std::filesystem::path& file) {
  auto parsed = parse(tag);
  if (!parsed) throw ID3FrameError::unreadableTag(file);
  parsed->frames.insert(parsed->frames.end(), frames.begin(), frames.end());
  return tagData(parsed->frames, 0, file);
}

void append(const std::vector<ID3Frame>& frames, const std::filesystem::path& toFileAt) {
  if (frames.empty()) return;
  FileHandle file = FileHandle::forReading(toFileAt);
  const auto tag = tagBytes(file);
  if (!tag) throw ID3FrameError::unreadableTag(toFileAt);
  writeTagWithAudio(appending(frames, *tag, toFileAt), file, tag->size(), toFileAt);
}

void write(const std::vector<ID3Frame>& frames, const std::filesystem::path& withAudioFrom,
           const std::filesystem::path& to) {
  FileHandle source = FileHandle::forReading(withAudioFrom);
  const auto tag = parseTagOf(source);
  writeTagWithAudio(tagData(frames, 0, to), source, tag ? tag->audioOffset : 0, to);
}

}  // namespace ID3Frames

}  // namespace QuillmarkKit
