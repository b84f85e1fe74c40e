#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace ID3TagEditor {

/// What all frames have in common: where they came from.
class ID3Frame {
 public:
  virtual ~ID3Frame() = default;

  /// The fields in one line, for looking at while debugging.
  virtual std::string debugDescription() const = 0;

  /// The identifier that the frame had on disk; absent on a frame that a caller built.
  std::optional<std::string> id3Identifier;
  /// The length that the frame had on disk, header included, in bytes; absent on a frame that a caller built.
  std::optional<std::size_t> size;

 protected:
  ID3Frame() = default;
  ID3Frame(const ID3Frame&) = default;
  ID3Frame(ID3Frame&&) = default;
  ID3Frame& operator=(const ID3Frame&) = default;
  ID3Frame& operator=(ID3Frame&&) = default;
};

}  // namespace ID3TagEditor
