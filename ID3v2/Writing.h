#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "ID3v2/Tag.h"

namespace ID3v2 {

/// A tag as bytes, and the parts of it that they do not contain.
struct Written {
  /// A whole tag, header and padding included.
  platform::Bytes bytes;
  /// The parts that the version cannot hold, named as in `UnreadablePart`; empty if everything is kept.
  std::vector<std::string> notKept;
};

/// Returns the number of zero bytes after header and frames of that size. As much of it is written as fits.
using Padding = std::function<std::size_t(std::size_t size)>;

/// Writes the tag, its frames in their order: v2.4 as v2.4, everything else as v2.3 (ID3v2.3.0 §3, ID3v2.4.0
/// structure §3). A frame with an `original` is written as that. Texts of others are Latin-1 where they fit,
/// else UTF-16 with a mark in v2.3 and UTF-8 in v2.4, where these frames have no flags. Of the flags in the
/// tag's header, only the experimental one is written. `notKept` names "a tag of more than 256 MiB" if it
/// would be one; `bytes` is empty then.
Written write(const Tag& tag, const Padding& padding);

}  // namespace ID3v2
