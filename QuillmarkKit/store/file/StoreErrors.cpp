#include "QuillmarkKit/store/file/StoreErrors.h"

#include <array>
#include <string_view>
#include <utility>

#include "platform/FileError.h"
#include "platform/base/EnumerationTable.h"
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

namespace {

std::string_view failure(ID3TagEditor::ID3TagEditorError::Case value, std::uint64_t size) {
  using enum ID3TagEditor::ID3TagEditorError::Case;
  struct Failure {
    ID3TagEditor::ID3TagEditorError::Case value;
    std::string_view text;
  };
  static constexpr std::array failures = std::to_array<Failure>({
      {invalidFileFormat, " is not named .mp3, so its tag is neither read nor written."},
      {tagTooBig, tagTooBigDescription},
      {invalidTagData, ": nothing would be left in its tag."},
      {corruptedFile, ": its ID3 tag says it is longer than the file."},
  });
  static_assert(
      platform::hasARowForEachCase(failures, &Failure::value, ID3TagEditor::ID3TagEditorError::lastCase));
  if (value == corruptedFile && size < platform::tagHeaderSize) return " is too short to be an MP3 file.";
  return failures[value].text;
}

}  // namespace

TagFileError::TagFileError(const ID3TagEditorError& error, const std::filesystem::path& url,
                           std::uint64_t size)
    : ID3TagEditorError(error), description_(platform::lastPathComponent(url)) {
  description_ += failure(error.value(), size);
}

ID3FrameError::ID3FrameError(Case value, std::filesystem::path url)
    : case_(value), url_(std::move(url)), description_(platform::lastPathComponent(url_)) {
  description_ +=
      value == Case::tagTooBig ? tagTooBigDescription : ": the ID3 tag could not be read back after writing.";
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
