#pragma once

#include <cstddef>

namespace ID3v2 {

/// Returns whether a date of this number of digits is a count of seconds since 1970, as the engine writes it
/// into v2.4 tags, and not a year followed by other digits.
constexpr bool areSecondsSince1970(std::size_t digits) {
  return digits == 9 || digits == 10;
}

}  // namespace ID3v2
