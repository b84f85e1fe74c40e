#include "QuillmarkKit/store/TagFileError.h"

#include <array>
#include <string_view>

#include "QuillmarkKit/store/engine/ID3FrameError.h"
#include "platform/FileError.h"
#include "platform/base/EnumerationTable.h"
#include "platform/base/Formats.h"

namespace QuillmarkKit {

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

}  // namespace QuillmarkKit
