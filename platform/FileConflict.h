#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

namespace platform {

/// Somebody else has put a hand on a file between the first look at it and its replacement, so that what was
/// made of it no longer fits. The file is left as that other one made it.
class FileConflict : public std::exception {
 public:
  enum class Case : std::uint8_t {
    /// The file has other contents or attributes, or another file has its name.
    changed,
    /// Something has its name that is no file, such as a link: to follow it now could lead anywhere.
    noFile,
    /// Nothing has its name any more.
    movedOrDeleted,
  };

  FileConflict(Case value, const std::filesystem::path& file);

  Case value() const { return case_; }
  /// One line for people that names the file by its last path component.
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  Case case_;
  std::string description_;
};

}  // namespace platform
