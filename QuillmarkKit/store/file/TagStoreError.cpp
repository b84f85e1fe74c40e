#include "QuillmarkKit/store/file/TagStoreError.h"

#include <utility>

#include "platform/FileError.h"

namespace QuillmarkKit {

namespace {

std::string failure(TagStoreError::Case value, const std::optional<std::string>& detected) {
  if (value == TagStoreError::Case::fileNotReadable) return " could not be read.";
  if (!detected) return " is not an MP3 file.";
  return " is not an MP3 — it looks like " + *detected + ". Quillmark writes ID3 tags, which only MP3s have.";
}

}  // namespace

TagStoreError::TagStoreError(Case value, std::filesystem::path url, std::optional<std::string> detected)
    : case_(value),
      url_(std::move(url)),
      detected_(std::move(detected)),
      description_(platform::lastPathComponent(url_) + failure(case_, detected_)) {
}

TagStoreError TagStoreError::unsupportedFileType(const std::filesystem::path& url,
                                                 std::optional<std::string> detected) {
  return {Case::unsupportedFileType, url, std::move(detected)};
}

TagStoreError TagStoreError::fileNotReadable(const std::filesystem::path& url) {
  return {Case::fileNotReadable, url, std::nullopt};
}

}  // namespace QuillmarkKit
