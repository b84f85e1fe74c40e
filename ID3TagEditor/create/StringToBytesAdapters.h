#pragma once

#include <memory>
#include <string_view>

#include "ID3TagEditor/model/ID3FrameConfiguration.h"
#include "platform/base/Bytes.h"

// The bodies of text frames (ID3v2.3.0 §3.3, §4.2): encoding byte, text, terminator.
namespace ID3TagEditor {

/// Returns the text in UTF-16 with a little-endian mark, or no bytes at all if the text is not UTF-8.
platform::Bytes utf16(std::string_view text);

class PaddingAdder {
 public:
  virtual ~PaddingAdder() = default;
  virtual void addPaddingTo(platform::Bytes& content, std::size_t count) const = 0;
};

class PaddingAdderToEndOfContentUsingNullChar : public PaddingAdder {
 public:
  void addPaddingTo(platform::Bytes& content, std::size_t count) const override {
    content.resize(content.size() + count);
  }
};

class StringToBytesAdapter {
 public:
  virtual ~StringToBytesAdapter() = default;
  virtual platform::Bytes adapt(std::string_view string, ID3Version version) const = 0;
};

/// Writes UTF-16 with a little-endian mark, for an empty text too. A text that is not UTF-8 is written as an
/// empty text without the mark.
class ID3UTF16StringToByteAdapter : public StringToBytesAdapter {
 public:
  explicit ID3UTF16StringToByteAdapter(std::unique_ptr<PaddingAdder> paddingAdder)
      : paddingAdder_(std::move(paddingAdder)) {}
  platform::Bytes adapt(std::string_view string, ID3Version version) const override;

 private:
  std::unique_ptr<PaddingAdder> paddingAdder_;
  ID3FrameConfiguration frameConfiguration_;
};

/// Writes ISO-8859-1, or UTF-16 if the text has other characters.
class ID3ISO88591StringToByteAdapter : public StringToBytesAdapter {
 public:
  explicit ID3ISO88591StringToByteAdapter(std::unique_ptr<PaddingAdder> paddingAdder)
      : paddingAdder_(std::move(paddingAdder)) {}
  platform::Bytes adapt(std::string_view string, ID3Version version) const override;

 private:
  std::unique_ptr<PaddingAdder> paddingAdder_;
  ID3FrameConfiguration frameConfiguration_;
};

}  // namespace ID3TagEditor
