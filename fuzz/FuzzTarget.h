#pragma once

#include <cstdio>
#include <cstdlib>

#include "platform/base/Bytes.h"

/// What a fuzz target does with one input, whatever its bytes are: return. Each target is one file with this.
void fuzzTarget(const platform::SharedBytes& input);

/// Ends the process as a crash unless the claim holds. In every build type, as `assert` does not.
inline void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %s\n", claim);
  std::abort();
}
