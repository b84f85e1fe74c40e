#pragma once

#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A failed system call, described in one line for users: the last path component of the file, the operation
/// that failed, and the reason that the system gave. Example: "01.mp3 could not be written: No space left on
/// device."
class FileError : public std::exception {
 public:
  /// `failure` is the operation that failed, such as `notRead`; `code` is the system's error number.
  FileError(const std::filesystem::path& file, std::string_view failure, int code);
  /// For an operation that the program itself refuses; `reason` is a clause without a full stop.
  FileError(const std::filesystem::path& file, std::string_view failure, std::string_view reason);

  const char* what() const noexcept override { return description_.c_str(); }
  const std::filesystem::path& file() const { return file_; }
  /// Returns the system's error number, or nothing if the program itself refused.
  std::optional<int> code() const { return code_; }
  /// Returns a copy of this error with one more sentence in its description.
  FileError followedBy(std::string_view sentence) const;

  static constexpr std::string_view notRead = "could not be read";
  static constexpr std::string_view notWritten = "could not be written";

 private:
  std::filesystem::path file_;
  std::string description_;
  std::optional<int> code_;
};

/// Returns the last path component; for a path that ends in a slash, the component before it.
std::string lastPathComponent(const std::filesystem::path& file);

}  // namespace platform
