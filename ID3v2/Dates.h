#pragma once

#include <cstddef>
#include <vector>

#include "ID3v2/Tag.h"

namespace ID3v2 {

/// Returns whether a date of so many digits is a count of seconds since 1970, as the engine writes it into
/// tags of v2.4, and not a year with something after it.
constexpr bool areSecondsSince1970(std::size_t digits) {
  return digits == 9 || digits == 10;
}

/// A tag's frames as `write` writes them: the date of v2.4 (TDRC, ID3v2.4.0 frames §4.2.5) as year, day and
/// time of v2.3 (TYER, TDAT and TIME, ID3v2.3.0 §4.2.1), as far as it tells them, and behind these still as
/// it is where they do not say all of it. It stays alone where it is no year, where there is more than one,
/// where one of the three is there already, and in a frame that is written as it was.
std::vector<Frame> withDatesOfV23(const std::vector<Frame>& frames);

}  // namespace ID3v2
