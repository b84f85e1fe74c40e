#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace platform {

/// A failed system call, described in one line for users: the last path component of the file, the operation
/// that failed, and the reason that the system gave. Example: "01.mp3 could not be written: No space left on
/// device."
class FileError : public std::runtime_error {
 public:
  /// `failure` is the operation that failed, such as `notRead`; `code` is the system's error number.
  FileError(const std::filesystem::path& file, std::string_view failure, int code);
  /// For an operation that the program itself refuses; `reason` is a clause without a full stop.
  FileError(const std::filesystem::path& file, std::string_view failure, std::string_view reason);

  const std::filesystem::path& file() const { return file_; }
  /// Returns the system's error number, or nothing if the program itself refused.
  std::optional<int> code() const { return code_; }
  /// Returns a copy of this error with one more sentence in its description.
  FileError followedBy(std::string_view sentence) const;

  static constexpr std::string_view notRead = "could not be read";
  static constexpr std::string_view notWritten = "could not be written";

 private:
  FileError(const std::filesystem::path& file, const std::string& description, std::optional<int> code)
      : std::runtime_error(description), file_(file), code_(code) {}

  std::filesystem::path file_;
  std::optional<int> code_;
};

/// Returns the last path component; for a path that ends in a slash, the component before it.
std::string lastPathComponent(const std::filesystem::path& file);

/// Another program has changed a file after it was opened and before it was replaced, so that the new version
/// no longer fits. The file is left as the other program made it. Described in one line that names the file.
class FileConflict : public std::runtime_error {
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

 private:
  Case case_;
};

}  // namespace platform
