#include "QuillmarkKit/store/MP3Check.h"

#include <array>
#include <string_view>

#include "QuillmarkKit/store/TagStoreError.h"
#include "platform/FileError.h"

namespace QuillmarkKit {

using platform::FileHandle;

namespace {

constexpr std::size_t leastSize = 3;

FileHandle openForReading(const std::filesystem::path& url) {
  try {
    return FileHandle::forReading(url);
  } catch (const platform::FileError& error) {
    // That something is no file at all is worth telling; the system's reasons all come to the same.
    if (!error.code()) throw;
    throw TagStoreError::fileNotReadable(url);
  }
}

bool hasAt(platform::ByteView data, std::size_t offset, std::string_view text) {
  return data.size() >= offset + text.size() &&
         platform::charactersOf(data.subspan(offset, text.size())) == text;
}

}  // namespace

FileHandle openMP3(const std::filesystem::path& at) {
  FileHandle file = openForReading(at);
  const platform::ByteView start = file.start();
  if (start.size() < leastSize) throw TagStoreError::unsupportedFileType(at, std::nullopt);
  if (!looksLikeMP3(start)) throw TagStoreError::unsupportedFileType(at, describeFormat(start));
  return file;
}

void verifyMP3(const std::filesystem::path& at) {
  openMP3(at);
}

bool looksLikeMP3(platform::ByteView data) {
  if (data.size() < leastSize) return false;
  if (data[0] == 0xFF) return data[1] >= 0xE0;
  return hasAt(data, 0, "ID3");
}

std::optional<std::string> describeFormat(platform::ByteView data) {
  struct Signature {
    std::size_t offset;
    std::string_view text;
    std::string_view format;
  };
  static constexpr std::array signatures = std::to_array<Signature>({
      {4, "ftypM4A", "M4A"},
      {4, "ftyp", "MPEG-4"},
      {0, "fLaC", "FLAC"},
      {0, "OggS", "Ogg"},
      {0, "RIFF", "WAV"},
      {0, "FORM", "AIFF"},
      {0, "wvpk", "WavPack"},
  });
  for (const auto& [offset, text, format] : signatures) {
    if (hasAt(data, offset, text)) return std::string(format);
  }
  return std::nullopt;
}

}  // namespace QuillmarkKit
