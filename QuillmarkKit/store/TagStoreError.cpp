#include "QuillmarkKit/store/TagStoreError.h"

#include "platform/FileError.h"

namespace QuillmarkKit {

TagStoreError TagStoreError::unsupportedFileType(const std::filesystem::path& url,
                                                 std::optional<std::string> detected) {
  const std::string name = platform::lastPathComponent(url);
  if (!detected) return TagStoreError(name + " is not an MP3 file.");
  return TagStoreError(name + " is not an MP3 — it looks like " + *detected +
                       ". Quillmark writes ID3 tags, which only MP3s have.");
}

TagStoreError TagStoreError::fileNotReadable(const std::filesystem::path& url) {
  return TagStoreError(platform::lastPathComponent(url) + " could not be read.");
}

}  // namespace QuillmarkKit
