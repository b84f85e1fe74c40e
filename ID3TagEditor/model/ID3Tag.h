#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ID3TagEditor/model/FrameName.h"
#include "ID3TagEditor/model/ID3Frame.h"
#include "ID3TagEditor/model/ID3Version.h"

namespace ID3TagEditor {

struct ID3TagProperties {
  /// The length of the tag in bytes without its 10-byte header, as it was last read or written.
  std::uint32_t size = 0;
  ID3Version version;
};

/// The frames of a tag by name. Copies of a tag share the frames.
using Frames = std::map<FrameName, std::shared_ptr<const ID3Frame>>;

/// One ID3v2 tag in memory.
class ID3Tag {
 public:
  explicit ID3Tag(ID3Version version, Frames initialFrames = {})
      : properties{.version = version}, frames(std::move(initialFrames)) {}

  /// Returns the whole tag as a text of many lines, for debugging.
  std::string debugDescription() const;

  /// Returns the frame of that name, or null if there is none or if it is of another class.
  template <class Frame>
  const Frame* frame(FrameName name) const {
    const auto found = frames.find(name);
    return found != frames.end() ? dynamic_cast<const Frame*>(found->second.get()) : nullptr;
  }

  /// Returns the frames of that class from name `first` to name `last`, both included, in the order of their
  /// names.
  template <class Frame>
  std::vector<const Frame*> framesBetween(FrameName first, FrameName last) const {
    std::vector<const Frame*> found;
    for (auto at = frames.lower_bound(first), end = frames.upper_bound(last); at != end; ++at) {
      if (const auto* frame = dynamic_cast<const Frame*>(at->second.get())) found.push_back(frame);
    }
    return found;
  }

  ID3TagProperties properties;
  Frames frames;
};

}  // namespace ID3TagEditor
