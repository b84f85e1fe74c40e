#pragma once

#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include "QuillmarkKit/model/TagField.h"

namespace quillmark {

/// What is wrong with a command line.
class CLIError : public std::exception {
 public:
  static CLIError unknownField(std::string_view name);
  static CLIError unreadableArtwork(std::string_view path);
  static CLIError noFiles();
  /// For a file that would take another one's place in a JSON document.
  static CLIError sameMember(const std::filesystem::path& file);
  /// For a field that is to be pasted although no field could hold its value.
  static CLIError cannotCarry(QuillmarkKit::TagField field, const std::string& value);
  /// A message that only one command has.
  explicit CLIError(std::string description) : description_(std::move(description)) {}

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
};

}  // namespace quillmark
