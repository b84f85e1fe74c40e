#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ID3v2/FrameWalk.h"
#include "ID3v2/Reading.h"
#include "ID3v2/Tag.h"

namespace ID3v2 {

/// Makes frames of what stands in one tag.
class FrameReader {
 public:
  /// `areUnsynchronised` when every frame is, whatever its own flag says; `tagSize` in bytes, to which the
  /// memory for compressed frames stays in proportion.
  FrameReader(std::uint8_t version, bool areUnsynchronised, std::size_t tagSize);

  /// Returns the frames in their order, except those of v2.2 that v2.3 has no place for.
  std::vector<Frame> read(const std::vector<RawFrame>& frames);

  /// Returns the frames so far that cannot be understood.
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
  /// The number of frames that chapters may still hold.
  std::size_t frameBudget_ = mostFrames;
  /// How many chapters stand around the frames that are being read.
  int depth_ = 0;
  std::vector<UnreadablePart> unreadable_;
};

}  // namespace ID3v2
