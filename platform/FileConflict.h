#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

namespace platform {

/// Another program has changed a file after it was opened and before it was replaced, so that the new version
/// no longer fits. The file is left as the other program made it.
class FileConflict : public std::exception {
 public:
  enum class Case : std::uint8_t {
    /// The file has other contents or attributes, or another file has its name.
    changed,
    /// Like `changed`, but found directly after waiting for the lock: the previous holder has changed the
    /// file.
    changedWhileWaiting,
    /// The name of the file belongs to something other than a file, such as a link, which could lead
    /// anywhere.
    noFile,
    /// The name of the file no longer exists.
    movedOrDeleted,
  };

  FileConflict(Case value, const std::filesystem::path& file);

  Case value() const { return case_; }
  /// Returns one line for users, which names the file by its last path component.
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  Case case_;
  std::string description_;
};

}  // namespace platform
