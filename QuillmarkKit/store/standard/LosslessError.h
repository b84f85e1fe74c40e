#pragma once

#include <exception>
#include <filesystem>
#include <string>

namespace QuillmarkKit {

/// Something that would be lost, which --lossless does not do.
class LosslessError : public std::exception {
 public:
  /// A file that a write would take something from.
  static LosslessError cannotKeep(const std::filesystem::path& url, const std::string& what);
  /// A file whose APE tag players would no longer show.
  static LosslessError hidesAPETag(const std::filesystem::path& url);
  /// A file with an ID3v2 tag that is not at its start.
  static LosslessError tagIsNotInFront(const std::filesystem::path& url);
  /// A part of a source that may hold what is to be carried.
  static LosslessError cannotRead(const std::filesystem::path& url, const std::string& what);
  /// A value of a source that no field of another file can hold, and what the field takes.
  static LosslessError cannotCarry(const std::filesystem::path& url, const std::string& what,
                                   std::string_view expected);
  /// A source whose tag, or a part of it, cannot be copied whole: `what` is a clause about it.
  static LosslessError cannotCopyTag(const std::filesystem::path& url, const std::string& what);
  /// A value that was asked for and that no tag can hold.
  static LosslessError cannotWrite(const std::string& what, std::string_view expected);

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  explicit LosslessError(std::string description) : description_(std::move(description)) {}

  std::string description_;
};

}  // namespace QuillmarkKit
