#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/base/Strings.h"

namespace ID3TagEditor {

/// The reason why the engine cannot read or write a tag. It contains neither the file nor a message for
/// people: the caller, which has the file's name, adds them.
class ID3TagEditorError : public std::exception {
 public:
  enum Case : std::uint8_t {
    /// The path's extension is not "mp3".
    invalidFileFormat,
    /// The serialised tag, or one frame of it, is too long for its size field.
    tagTooBig,
    /// The tag to write has no frame that can be written.
    invalidTagData,
    /// The file ends before its tag does, or is shorter than a tag header.
    corruptedFile,
  };
  static constexpr Case lastCase = corruptedFile;

  ID3TagEditorError(Case error) : case_(error) {}
  Case value() const { return case_; }
  const char* what() const noexcept override {
    static constexpr std::array names{"invalidFileFormat", "tagTooBig", "invalidTagData", "corruptedFile"};
    static_assert(names.size() == lastCase + 1);
    return names[case_];
  }
  friend bool operator==(const ID3TagEditorError& a, const ID3TagEditorError& b) {
    return a.case_ == b.case_;
  }

 private:
  Case case_;
};

/// Throws `invalidFileFormat` unless the text after the last dot in the last component of the path is "mp3"
/// in any letter case.
inline void requireMp3Extension(const std::filesystem::path& path) {
  const std::string name = path.filename().native();
  const std::size_t dot = name.rfind('.');
  const std::string extension = dot == std::string::npos ? "" : name.substr(dot + 1);
  if (!platform::Strings::equalIgnoringASCIICase(extension, "mp3")) {
    throw ID3TagEditorError(ID3TagEditorError::invalidFileFormat);
  }
}

}  // namespace ID3TagEditor

template <>
struct std::hash<ID3TagEditor::ID3TagEditorError> {
  std::size_t operator()(const ID3TagEditor::ID3TagEditorError& error) const noexcept {
    return error.value();
  }
};
