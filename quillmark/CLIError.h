#pragma once

#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include "QuillmarkKit/model/TagField.h"

namespace quillmark {

/// The tool's name in everything that it prints, even if it was started under another name.
inline constexpr std::string_view toolName = "quillmark";

/// A mistake in a command line.
class CLIError : public std::exception {
 public:
  /// `hint` is a sentence for a note, or empty.
  static CLIError unknownField(std::string_view name, std::string hint);
  static CLIError unreadableArtwork(std::string_view path, std::string hint);
  static CLIError noFiles();
  /// For a file whose member in a JSON document would have the name of another file's.
  static CLIError sameMember(const std::filesystem::path& file);
  /// For a selected field whose copied value no field can hold.
  static CLIError cannotCarry(QuillmarkKit::TagField field, const std::string& value);
  /// For messages that are used only once.
  explicit CLIError(std::string description, std::string hint = {})
      : description_(std::move(description)), hint_(std::move(hint)) {}

  const char* what() const noexcept override { return description_.c_str(); }
  /// Returns a sentence for a note that may help, or an empty text.
  const std::string& hint() const { return hint_; }

 private:
  std::string description_;
  std::string hint_;
};

}  // namespace quillmark
