#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "ID3TagEditor/model/ID3TagEditorError.h"

namespace QuillmarkKit {

/// An error of the engine about a file. The message is one line that names the file.
class TagFileError : public ID3TagEditor::ID3TagEditorError {
 public:
  /// `size` is the size of the file in bytes.
  TagFileError(const ID3TagEditorError& error, const std::filesystem::path& url, std::uint64_t size);
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
};

}  // namespace QuillmarkKit
