#pragma once

#include <exception>
#include <filesystem>
#include <optional>
#include <string>

namespace QuillmarkKit {

/// A file that no tags can be read from or written to.
class TagStoreError : public std::exception {
 public:
  /// The file's first bytes are not those of an MP3; `detected` names the format that they are of, if it is
  /// known.
  static TagStoreError unsupportedFileType(const std::filesystem::path& url,
                                           std::optional<std::string> detected);
  /// The file could not be opened.
  static TagStoreError fileNotReadable(const std::filesystem::path& url);

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  explicit TagStoreError(std::string description) : description_(std::move(description)) {}

  std::string description_;
};

}  // namespace QuillmarkKit
