#include "QuillmarkKit/store/file/MP3File.h"

#include <algorithm>
#include <string_view>

#include "QuillmarkKit/store/file/StoreErrors.h"
#include "platform/FileError.h"
#include "platform/base/Formats.h"

namespace QuillmarkKit {

using platform::FileHandle;

namespace {

constexpr std::size_t leastSize = 3;

FileHandle openForReading(const std::filesystem::path& url) {
  try {
    return FileHandle::forReading(url);
  } catch (const platform::FileError& error) {
    // An error without a code says that the file is a folder, pipe or device; the system's reasons are left
    // out.
    if (!error.code()) throw;
    throw TagStoreError::fileNotReadable(url);
  }
}

}  // namespace

MP3File::MP3File(const std::filesystem::path& path) : MP3File(openForReading(path)) {
  const platform::ByteView start = handle_.start();
  if (start.size() < leastSize) throw TagStoreError::unsupportedFileType(path, std::nullopt);
  if (!looksLikeMP3(start)) throw TagStoreError::unsupportedFileType(path, describeFormat(start));
}

const platform::SharedBytes& MP3File::tagBytes() {
  if (!tagBytes_) {
    const platform::ByteView start = handle_.start();
    const std::uint64_t claimed = platform::claimedTagSize(start);
    const auto size = static_cast<std::size_t>(
        std::min(claimed > 0 ? claimed : std::uint64_t{start.size()}, handle_.size()));
    platform::Bytes bytes = handle_.readFirst(size);
    if (bytes.size() < size) {
      throw platform::FileConflict(platform::FileConflict::Case::changed, handle_.path());
    }
    tagBytes_ = std::move(bytes);
  }
  return *tagBytes_;
}

platform::Bytes MP3File::lastBytes(std::size_t count) {
  handle_.seek(handle_.size() - std::min<std::uint64_t>(handle_.size(), count));
  return handle_.read(count);
}

void verifyMP3(const std::filesystem::path& at) {
  MP3File file(at);
}

bool looksLikeMP3(platform::ByteView data) {
  if (data.size() < leastSize) return false;
  if (data[0] == 0xFF) return data[1] >= 0xE0;
  return platform::charactersOf(data).starts_with("ID3");
}

std::optional<std::string> describeFormat(platform::ByteView data) {
  const std::string_view format = platform::formatOf(platform::charactersOf(data), platform::otherMusic);
  return format.empty() ? std::nullopt : std::optional<std::string>(format);
}

}  // namespace QuillmarkKit
