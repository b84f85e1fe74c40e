#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <functional>

namespace ID3TagEditor {

/// Why the engine cannot read or write a tag. The values carry no file and no text for people; a caller that
/// knows the file says what is wrong with it.
class ID3TagEditorError : public std::exception {
 public:
  enum Case : std::uint8_t {
    /// The path's extension is not "mp3".
    invalidFileFormat,
    /// The serialised tag, or one frame of it, is longer than its size field can tell.
    tagTooBig,
    /// The tag to write holds no frame that could be written.
    invalidTagData,
    /// Fewer bytes are there than the tag header announces, or than a header has.
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

}  // namespace ID3TagEditor

template <>
struct std::hash<ID3TagEditor::ID3TagEditorError> {
  std::size_t operator()(const ID3TagEditor::ID3TagEditorError& error) const noexcept {
    return error.value();
  }
};
