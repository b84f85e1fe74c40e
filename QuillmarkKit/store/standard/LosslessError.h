#pragma once

#include <exception>
#include <filesystem>
#include <string>

namespace QuillmarkKit {

/// Thrown by --lossless and --whole-tag if something would be lost or cannot be read or written.
class LosslessError : public std::exception {
 public:
  /// Returns the error for a file that would lose `what` in a write.
  static LosslessError cannotKeep(const std::filesystem::path& url, const std::string& what);
  /// Returns the error for a file whose APE tag a new ID3v2 tag would hide from players.
  static LosslessError hidesAPETag(const std::filesystem::path& url);
  /// Returns the error for a file with other data before its ID3v2 tag.
  static LosslessError tagIsNotInFront(const std::filesystem::path& url);
  /// Returns the error for a source with an unreadable part, `what`, that may contain one of the fields to
  /// write.
  static LosslessError cannotRead(const std::filesystem::path& url, const std::string& what);
  /// Returns the error for a value of a source, `what`, that cannot be written into other files. `expected`
  /// is the kind of value that the field takes.
  static LosslessError cannotCarry(const std::filesystem::path& url, const std::string& what,
                                   std::string_view expected);
  /// Returns the error for a source whose tag cannot be copied whole. `what` is a clause with the reason.
  static LosslessError cannotCopyTag(const std::filesystem::path& url, const std::string& what);
  /// For a target whose tag contains data that may be audio.
  static LosslessError cannotReplaceTag(const std::filesystem::path& url, const std::string& what);
  /// Returns the error for a given value, `what`, that no tag can contain. `expected` is the kind of value
  /// that the field takes.
  static LosslessError cannotWrite(const std::string& what, std::string_view expected);

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  explicit LosslessError(std::string description) : description_(std::move(description)) {}

  std::string description_;
};

}  // namespace QuillmarkKit
