#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "ID3v2/Tag.h"

namespace ID3v2 {

/// A tag as bytes, and the names of the parts that they lack.
struct Written {
  /// A whole tag, header and padding included.
  platform::Bytes bytes;
  /// The parts that the version cannot represent, named as in `UnreadablePart`. Empty if everything was
  /// written.
  std::vector<std::string> notKept;
};

/// Returns the number of padding bytes for a header and frames of that size. If the tag would become too long
/// for its size field, less padding is written.
using Padding = std::function<std::size_t(std::size_t size)>;

/// Writes the frames in their order into a v2.4 tag if the tag's version is 4, else into a v2.3 tag
/// (ID3v2.3.0 §3, ID3v2.4.0 structure §3). A frame with `original` bytes is written as these. All other
/// frames are made from their content. Their texts are Latin-1 if possible, else UTF-16 with a mark in v2.3
/// and UTF-8 in v2.4; in v2.4 they have no flags. Of the flags in the tag's header, only the experimental one
/// is written. If the frames do not fit into a tag, `bytes` is empty and `notKept` contains "a tag of more
/// than 256 MiB".
Written write(const Tag& tag, const Padding& padding);

}  // namespace ID3v2
