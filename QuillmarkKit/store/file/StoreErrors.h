#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

#include "ID3TagEditor/model/ID3TagEditorError.h"

namespace QuillmarkKit {

/// An error about a file whose tags cannot be read or written.
class TagStoreError : public std::runtime_error {
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

  friend bool operator==(const TagStoreError& a, const TagStoreError& b) {
    return a.case_ == b.case_ && a.url_ == b.url_ && a.detected_ == b.detected_;
  }

 private:
  TagStoreError(Case value, std::filesystem::path url, std::optional<std::string> detected);

  Case case_;
  std::filesystem::path url_;
  std::optional<std::string> detected_;
};

/// An error of the engine about a file. The message is one line that names the file.
class TagFileError : public ID3TagEditor::ID3TagEditorError {
 public:
  /// `size` is the size of the file in bytes.
  TagFileError(const ID3TagEditorError& error, const std::filesystem::path& url, std::uint64_t size);

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
};

/// An error about a file whose raw frames cannot be rewritten.
class ID3FrameError : public std::runtime_error {
 public:
  enum class Case : std::uint8_t {
    /// The file should have a tag at this point, but contains none that can be parsed.
    unreadableTag,
    /// The frames do not fit into one tag.
    tagTooBig,
  };

  ID3FrameError(Case value, std::filesystem::path url);

  Case value() const { return case_; }
  const std::filesystem::path& url() const { return url_; }

  friend bool operator==(const ID3FrameError& a, const ID3FrameError& b) {
    return a.case_ == b.case_ && a.url_ == b.url_;
  }

 private:
  Case case_;
  std::filesystem::path url_;
};

/// The message, after the file's name, of all errors about a tag that is too big.
inline constexpr const char* tagTooBigDescription =
    ": its tag would be larger than 256 MiB, more than an ID3 tag can hold.";

/// Thrown by --lossless and --whole-tag if something would be lost or cannot be read or written.
class LosslessError : public std::runtime_error {
 public:
  /// Returns the error about a file. `failure` is a clause without a full stop, such as "--lossless cannot
  /// keep the title".
  static LosslessError about(const std::filesystem::path& url, const std::string& failure);
  /// Returns the error for a file that would lose `what` in a write.
  static LosslessError cannotKeep(const std::filesystem::path& url, const std::string& what) {
    return about(url, "--lossless cannot keep " + what);
  }
  /// Returns the error for a file whose APE tag a new ID3v2 tag would hide from players.
  static LosslessError hidesAPETag(const std::filesystem::path& url) {
    return about(url, "--lossless cannot keep its APE tag in sight: a new ID3v2 tag would hide it");
  }
  /// Returns the error for a source whose tag cannot be copied whole. `what` is a clause with the reason.
  static LosslessError cannotCopyTag(const std::filesystem::path& url, const std::string& what) {
    return about(url, "--whole-tag needs an undamaged ID3v2 tag, but " + what);
  }
  /// Returns the error for a value that cannot be written. `failure` is a clause that names it, and
  /// `expected` the kind of value that the field takes. `url` is the source of the value, or empty.
  static LosslessError unexpected(const std::filesystem::path& url, const std::string& failure,
                                  std::string_view expected);

 private:
  using std::runtime_error::runtime_error;
};

}  // namespace QuillmarkKit
