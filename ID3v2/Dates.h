#pragma once

#include <cstddef>

namespace ID3v2 {

/// Returns whether a date of so many digits is a count of seconds since 1970, as the engine writes it into
/// tags of v2.4, and not a year with something after it.
constexpr bool areSecondsSince1970(std::size_t digits) {
  return digits == 9 || digits == 10;
}

}  // namespace ID3v2
