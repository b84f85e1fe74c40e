#pragma once

#include <filesystem>
#include <string>

#include "ID3TagEditor/model/ID3TagEditorError.h"

namespace QuillmarkKit {

/// The engine's error about a file, as one line for people that names the file.
class TagFileError : public ID3TagEditor::ID3TagEditorError {
 public:
  TagFileError(const ID3TagEditorError& error, const std::filesystem::path& url);
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
};

}  // namespace QuillmarkKit
