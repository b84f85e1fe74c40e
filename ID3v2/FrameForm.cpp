#include "ID3v2/FrameForm.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/base/Formats.h"

namespace ID3v2 {

bool isUnsynchronised(platform::ByteView bytes) {
  for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
    if (bytes[i] == 0xFF && bytes[i + 1] >= 0xE0) return false;
  }
  return bytes.empty() || bytes.back() != 0xFF;
}

platform::Bytes unsynchronisationUndone(platform::ByteView bytes) {
  platform::Bytes undone;
  undone.reserve(bytes.size());
  bool isAfterFF = false;
  for (const std::uint8_t byte : bytes) {
    if (!isAfterFF || byte != 0) undone.push_back(byte);
    isAfterFF = byte == 0xFF;
  }
  return undone;
}

namespace {

/// Owns the state of zlib.
struct Inflater {
  z_stream stream{};
  bool isReady = inflateInit(&stream) == Z_OK;

  Inflater() = default;
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() {
    if (isReady) inflateEnd(&stream);
  }
};

}  // namespace

std::optional<platform::Bytes> inflate(platform::ByteView bytes, std::size_t& budget) {
  constexpr std::size_t firstPiece = 4096;
  const std::size_t limit = std::min(budget, std::max(bytes.size() * inflationLimit, inflationFloor));
  Inflater inflater;
  if (!inflater.isReady || bytes.size() > std::numeric_limits<uInt>::max()) return std::nullopt;
  z_stream& stream = inflater.stream;
  // zlib does not write to its input, although it takes a pointer to non-const.
  stream.next_in = const_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
  platform::Bytes inflated;
  for (std::size_t room = firstPiece;; room *= 2) {
    const std::size_t before = inflated.size();
    inflated.resize(std::min(limit, room));
    stream.next_out = inflated.data() + before;
    stream.avail_out = static_cast<uInt>(inflated.size() - before);
    const int result = ::inflate(&stream, Z_NO_FLUSH);
    budget -= inflated.size() - before - stream.avail_out;
    if (result == Z_STREAM_END) break;
    if (result != Z_OK || stream.avail_out > 0 || inflated.size() == limit) return std::nullopt;
  }
  if (stream.avail_in > 0) return std::nullopt;
  inflated.resize(inflated.size() - stream.avail_out);
  return inflated;
}

namespace {

// The flags of v2.4 (ID3v2.4.0 structure §4.1).
constexpr std::uint16_t statusFlagsOfV24 = 0x7000;
constexpr std::uint16_t groupingOfV24 = 0x40;
constexpr std::uint16_t compressionOfV24 = 0x08;
constexpr std::uint16_t encryptionOfV24 = 0x04;
constexpr std::uint16_t lengthOfV24 = 0x01;

/// Takes bytes from the front. The caller must check with `has` that there are enough.
class Front {
 public:
  explicit Front(platform::SharedBytes bytes) : rest_(std::move(bytes)) {}

  bool has(std::size_t count) const { return count <= rest_.size(); }
  platform::SharedBytes take(std::size_t count) {
    platform::SharedBytes front = rest_.slice(0, count);
    rest_ = rest_.slice(count, rest_.size() - count);
    return front;
  }
  std::uint8_t takeByte() { return take(1).view()[0]; }
  const platform::SharedBytes& rest() const { return rest_; }

 private:
  platform::SharedBytes rest_;
};

std::optional<FrameForm> formOfV23(std::uint16_t flags, const platform::SharedBytes& bytes) {
  FrameForm form;
  form.isCompressed = (flags & compressionFlag) != 0;
  form.isEncrypted = (flags & encryptionFlag) != 0;
  form.otherFlags = static_cast<std::uint16_t>(flags & ~(compressionFlag | encryptionFlag));
  const bool isGrouped = (flags & groupingFlag) != 0;
  Front front(bytes);
  if (!front.has((form.isCompressed ? 4 : 0) + (form.isEncrypted ? 1 : 0) + (isGrouped ? 1 : 0))) {
    return std::nullopt;
  }
  if (form.isCompressed) form.length = platform::bigEndian(front.take(4));
  if (form.isEncrypted) form.method = front.takeByte();
  if (isGrouped) form.group = front.takeByte();
  form.content = front.rest();
  return form;
}

std::optional<FrameForm> formOfV24(std::uint16_t flags, const platform::SharedBytes& bytes) {
  FrameForm form;
  form.isCompressed = (flags & compressionOfV24) != 0;
  form.isEncrypted = (flags & encryptionOfV24) != 0;
  form.otherFlags = static_cast<std::uint16_t>((flags & statusFlagsOfV24) << 1);
  const bool isGrouped = (flags & groupingOfV24) != 0;
  const bool hasLength = (flags & lengthOfV24) != 0;
  if (isGrouped) form.otherFlags |= groupingFlag;
  Front front(bytes);
  if (!front.has((hasLength ? 4 : 0) + (form.isEncrypted ? 1 : 0) + (isGrouped ? 1 : 0))) {
    return std::nullopt;
  }
  if (isGrouped) form.group = front.takeByte();
  if (form.isEncrypted) form.method = front.takeByte();
  if (hasLength) form.length = platform::numberFromSynchsafe(platform::bigEndian(front.take(4)));
  form.content = front.rest();
  return form;
}

}  // namespace

std::uint16_t FrameForm::flags() const {
  return static_cast<std::uint16_t>(otherFlags | (isCompressed ? compressionFlag : 0) |
                                    (isEncrypted ? encryptionFlag : 0));
}

std::optional<platform::SharedBytes> FrameForm::inV23() const {
  // In v2.3, exactly the compressed frames have a length field. An encrypted frame with a length that is not
  // compressed has no form in v2.3.
  const bool hasLength = length && (isCompressed || isEncrypted);
  if (hasLength != isCompressed) return std::nullopt;
  if (!isCompressed && !method && !group) return content;
  platform::Bytes bytes;
  if (isCompressed) platform::append(bytes, platform::bigEndianBytes(*length));
  if (method) bytes.push_back(*method);
  if (group) bytes.push_back(*group);
  platform::append(bytes, content);
  return bytes;
}

std::array<std::uint8_t, 4> sizeField(std::size_t size, std::uint8_t version) {
  const auto number = static_cast<std::uint32_t>(size);
  return platform::bigEndianBytes(version == 4 ? platform::synchsafe(number) : number);
}

std::optional<FrameForm> frameForm(std::uint16_t flags, const platform::SharedBytes& bytes,
                                   std::uint8_t version) {
  if (version == 4) return formOfV24(flags, bytes);
  // v2.2 has no flags.
  return formOfV23(version == 3 ? flags : std::uint16_t{0}, bytes);
}

}  // namespace ID3v2
