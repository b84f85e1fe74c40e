#pragma once

#include <exception>
#include <filesystem>
#include <string>

namespace QuillmarkKit {

/// A file whose raw frames cannot be rewritten.
class ID3FrameError : public std::exception {
 public:
  /// The file should carry a tag by now, but holds none that can be parsed.
  static ID3FrameError unreadableTag(const std::filesystem::path& url);
  /// The frames that the file is to hold do not fit into a tag.
  static ID3FrameError tagTooBig(const std::filesystem::path& url);

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  explicit ID3FrameError(std::string description) : description_(std::move(description)) {}

  std::string description_;
};

}  // namespace QuillmarkKit
