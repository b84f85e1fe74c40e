#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ID3v2/Tag.h"

namespace ID3v2 {

/// A tag as bytes, and what of it these bytes do not hold.
struct Written {
  /// A whole ID3v2.3 tag, header and padding included, no flag set in its header.
  platform::Bytes bytes;
  /// What v2.3 cannot hold, named as in `UnreadablePart`; empty when everything is kept.
  std::vector<std::string> notKept;
};

/// The tag in ID3v2.3, its frames in their order and `padding` zero bytes behind them (ID3v2.3.0 §3). A frame
/// with an `original` is written as that. Texts are Latin-1 where they fit, else UTF-16 with a mark.
/// `notKept` names "a tag of more than 256 MiB" when that is what it would be; `bytes` is empty then.
Written write(const Tag& tag, std::size_t padding);

}  // namespace ID3v2
