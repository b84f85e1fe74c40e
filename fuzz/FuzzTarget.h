#pragma once

#include <cstdio>
#include <cstdlib>

#include "platform/base/Bytes.h"

/// Runs the target with one input. It must return for any bytes. Each target defines this function in one
/// file.
void fuzzTarget(const platform::SharedBytes& input);

/// Aborts the process unless the claim holds; the fuzzer reports that as a crash. Unlike `assert`, does so in
/// every build type.
inline void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %s\n", claim);
  std::abort();
}
