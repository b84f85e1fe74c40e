#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

namespace QuillmarkKit {

/// An error about a file whose raw frames cannot be rewritten.
class ID3FrameError : public std::exception {
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
  const char* what() const noexcept override { return description_.c_str(); }

  friend bool operator==(const ID3FrameError& a, const ID3FrameError& b) {
    return a.case_ == b.case_ && a.url_ == b.url_;
  }

 private:
  Case case_;
  std::filesystem::path url_;
  std::string description_;
};

/// The message, after the file's name, of all errors about a tag that is too big.
inline constexpr const char* tagTooBigDescription =
    ": its tag would be larger than 256 MiB, more than an ID3 tag can hold.";

}  // namespace QuillmarkKit
