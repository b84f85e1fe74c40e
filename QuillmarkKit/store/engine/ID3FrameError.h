#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

namespace QuillmarkKit {

/// A file whose raw frames cannot be rewritten.
class ID3FrameError : public std::exception {
 public:
  enum class Case : std::uint8_t {
    /// The file should carry a tag by now, but holds none that can be parsed.
    unreadableTag,
    /// The frames that the file is to hold do not fit into a tag.
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

/// What every error about a tag that is too big says behind the file's name.
inline constexpr const char* tagTooBigDescription =
    ": its tag would be larger than 256 MiB, more than an ID3 tag can hold.";

}  // namespace QuillmarkKit
