#include "QuillmarkKit/store/TagFileError.h"

#include <array>
#include <string_view>
#include <system_error>

#include "QuillmarkKit/store/ID3FrameError.h"
#include "platform/FileError.h"

namespace QuillmarkKit {

namespace {

std::string_view failure(ID3TagEditor::ID3TagEditorError::Case value, const std::filesystem::path& url) {
  // In the order of the cases.
  static constexpr std::array<std::string_view, 4> failures{
      " is not named .mp3, so its tag cannot be edited.",
      tagTooBigDescription,
      ": nothing would be left in its tag.",
      ": its ID3 tag says it is longer than the file.",
  };
  constexpr std::uintmax_t tagHeaderSize = 10;
  std::error_code ignored;
  if (value == ID3TagEditor::ID3TagEditorError::corruptedFile &&
      std::filesystem::file_size(url, ignored) < tagHeaderSize) {
    return " is too short to be an MP3 file.";
  }
  return failures[value];
}

}  // namespace

TagFileError::TagFileError(const ID3TagEditorError& error, const std::filesystem::path& url)
    : ID3TagEditorError(error), description_(platform::lastPathComponent(url)) {
  description_ += failure(error.value(), url);
}

}  // namespace QuillmarkKit
