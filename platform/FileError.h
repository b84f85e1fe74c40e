#pragma once

#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A failed system call: what could not be done to which file, and the system's reason, as one line for
/// people: "01.mp3 could not be written: No space left on device." The file is named by its last path
/// component.
class FileError : public std::exception {
 public:
  /// `code` is the system's error number.
  FileError(const std::filesystem::path& file, std::string_view failure, int code);
  /// For what the program itself refuses; `reason` is a clause without a full stop.
  FileError(const std::filesystem::path& file, std::string_view failure, std::string_view reason);

  const char* what() const noexcept override { return description_.c_str(); }
  const std::filesystem::path& file() const { return file_; }
  /// The system's error number; nothing when it was the program itself that refused.
  std::optional<int> code() const { return code_; }
  /// The same with one more sentence in its line.
  FileError followedBy(std::string_view sentence) const;

  static constexpr std::string_view notRead = "could not be read";
  static constexpr std::string_view notWritten = "could not be written";

 private:
  std::filesystem::path file_;
  std::string description_;
  std::optional<int> code_;
};

/// The last path component; for a path that ends in a slash, the component before it.
std::string lastPathComponent(const std::filesystem::path& file);

}  // namespace platform
