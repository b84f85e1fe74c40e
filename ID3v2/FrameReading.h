#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ID3v2/FrameWalk.h"
#include "ID3v2/Reading.h"
#include "ID3v2/Tag.h"

namespace ID3v2 {

/// Interprets the frames of one tag.
class FrameReader {
 public:
  /// `areUnsynchronised` is true if every frame is unsynchronised, whatever its own flag is. `tagSize` is the
  /// size of the tag in bytes; it limits the memory for compressed frames.
  FrameReader(std::uint8_t version, bool areUnsynchronised, std::size_t tagSize);

  /// Returns the frames in their order. Leaves out frames of v2.2 that cannot be converted to v2.3.
  std::vector<Frame> read(const std::vector<RawFrame>& frames);

  /// Returns the parts found so far that cannot be understood.
  const std::vector<UnreadablePart>& unreadable() const { return unreadable_; }

 private:
  enum class Outcome { read, empty, unreadable };

  Outcome readForm(const RawFrame& raw, Frame& frame);
  platform::SharedBytes originalOf(const RawFrame& raw, const platform::SharedBytes& bytes) const;
  std::optional<Content> readContent(const std::string& identifier, const platform::SharedBytes& bytes);
  std::optional<Content> readChapter(const platform::SharedBytes& bytes);
  std::optional<Content> readTableOfContents(const platform::SharedBytes& bytes);
  template <class Parent>
  std::optional<Content> withFramesInside(Parent parent, const platform::SharedBytes& bytes,
                                          std::size_t size);

  std::uint8_t version_;
  bool areUnsynchronised_;
  std::size_t inflationBudget_;
  /// The number of frames that chapters may still contain.
  std::size_t frameBudget_ = mostFrames;
  /// The number of chapters that enclose the frames being read.
  int depth_ = 0;
  std::vector<UnreadablePart> unreadable_;
};

}  // namespace ID3v2
