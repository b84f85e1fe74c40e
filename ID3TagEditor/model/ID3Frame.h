#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace ID3TagEditor {

/// The base class of all frames. Records where a frame was read from.
class ID3Frame {
 public:
  virtual ~ID3Frame() = default;

  /// Returns the fields in one line, for debugging.
  virtual std::string debugDescription() const = 0;

  /// The identifier that the frame had on disk; absent if the caller built the frame.
  std::optional<std::string> id3Identifier;
  /// The length of the frame on disk in bytes, header included; absent if the caller built the frame.
  std::optional<std::size_t> size;

 protected:
  ID3Frame() = default;
  ID3Frame(const ID3Frame&) = default;
  ID3Frame(ID3Frame&&) = default;
  ID3Frame& operator=(const ID3Frame&) = default;
  ID3Frame& operator=(ID3Frame&&) = default;
};

}  // namespace ID3TagEditor
