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
  /// `hint` is a sentence for a note, or empty, as in all errors.
  static CLIError unknownField(std::string_view name, std::string hint);
  static CLIError unreadableArtwork(std::string_view path, std::string hint);
  static CLIError noFiles();
  /// For a file that would take another one's place in a JSON document.
  static CLIError sameMember(const std::filesystem::path& file);
  /// For a field that is to be pasted although no field could hold its value.
  static CLIError cannotCarry(QuillmarkKit::TagField field, const std::string& value);
  /// A message that only one command has.
  explicit CLIError(std::string description, std::string hint = {})
      : description_(std::move(description)), hint_(std::move(hint)) {}

  const char* what() const noexcept override { return description_.c_str(); }
  /// What may help, as a sentence that goes into a note; empty if nothing.
  const std::string& hint() const { return hint_; }

 private:
  std::string description_;
  std::string hint_;
};

}  // namespace quillmark
