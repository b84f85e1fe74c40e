#include "ID3v2/Inflation.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace ID3v2 {

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

}  // namespace ID3v2
