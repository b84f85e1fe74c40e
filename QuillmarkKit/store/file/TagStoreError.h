#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>

namespace QuillmarkKit {

/// An error about a file whose tags cannot be read or written.
class TagStoreError : public std::exception {
 public:
  enum class Case : std::uint8_t { unsupportedFileType, fileNotReadable };

  /// Returns the error for a file that does not start like an MP3. `detected` is the name of the format that
  /// it starts like, if known.
  static TagStoreError unsupportedFileType(const std::filesystem::path& url,
                                           std::optional<std::string> detected);
  /// Returns the error for a file that could not be opened.
  static TagStoreError fileNotReadable(const std::filesystem::path& url);

  Case value() const { return case_; }
  const std::filesystem::path& url() const { return url_; }
  const std::optional<std::string>& detected() const { return detected_; }
  const char* what() const noexcept override { return description_.c_str(); }

  friend bool operator==(const TagStoreError& a, const TagStoreError& b) {
    return a.case_ == b.case_ && a.url_ == b.url_ && a.detected_ == b.detected_;
  }

 private:
  TagStoreError(Case value, std::filesystem::path url, std::optional<std::string> detected);

  Case case_;
  std::filesystem::path url_;
  std::optional<std::string> detected_;
  std::string description_;
};

}  // namespace QuillmarkKit
