#include "QuillmarkKit/store/file/StoreErrors.h"

#include <string_view>
#include <utility>

#include "platform/FileError.h"
#include "platform/base/Formats.h"

namespace QuillmarkKit {

namespace {

std::string failure(TagStoreError::Case value, const std::optional<std::string>& detected) {
  if (value == TagStoreError::Case::fileNotReadable) return " could not be read.";
  if (!detected) return " is not an MP3 file.";
  return " is not an MP3 — it looks like " + *detected + ". Quillmark writes ID3 tags, which only MP3s have.";
}

}  // namespace

TagStoreError::TagStoreError(Case value, std::filesystem::path url, std::optional<std::string> detected)
    : std::runtime_error(platform::lastPathComponent(url) + failure(value, detected)),
      case_(value),
      url_(std::move(url)),
      detected_(std::move(detected)) {
}

TagStoreError TagStoreError::unsupportedFileType(const std::filesystem::path& url,
                                                 std::optional<std::string> detected) {
  return {Case::unsupportedFileType, url, std::move(detected)};
}

TagStoreError TagStoreError::fileNotReadable(const std::filesystem::path& url) {
  return {Case::fileNotReadable, url, std::nullopt};
}

namespace {

std::string_view failure(ID3TagEditor::ID3TagEditorError::Case value, std::uint64_t size) {
  using enum ID3TagEditor::ID3TagEditorError::Case;
  switch (value) {
    case invalidFileFormat:
      return " is not named .mp3, so its tag is neither read nor written.";
    case tagTooBig:
      return tagTooBigDescription;
    case invalidTagData:
      return ": nothing would be left in its tag.";
    case corruptedFile:
      break;
  }
  return size < platform::tagHeaderSize ? " is too short to be an MP3 file."
                                        : ": its ID3 tag says it is longer than the file.";
}

}  // namespace

TagFileError::TagFileError(const ID3TagEditorError& error, const std::filesystem::path& url,
                           std::uint64_t size)
    : ID3TagEditorError(error), description_(platform::lastPathComponent(url)) {
  description_ += failure(error.value(), size);
}

ID3FrameError::ID3FrameError(Case value, std::filesystem::path url)
    : std::runtime_error(platform::lastPathComponent(url) +
                         (value == Case::tagTooBig ? tagTooBigDescription
                                                   : ": the ID3 tag could not be read back after writing.")),
      case_(value),
      url_(std::move(url)) {
}

LosslessError LosslessError::about(const std::filesystem::path& url, const std::string& failure) {
  return LosslessError(platform::lastPathComponent(url) + ": " + failure + ".");
}

LosslessError LosslessError::unexpected(const std::filesystem::path& url, const std::string& failure,
                                        std::string_view expected) {
  const std::string clause = failure + " (expected " + std::string(expected) + ")";
  if (url.empty()) return LosslessError(clause + ".");
  return about(url, clause + ". Leave it out with --fields");
}

}  // namespace QuillmarkKit
