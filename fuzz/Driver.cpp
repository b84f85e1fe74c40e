#include <sanitizer/allocator_interface.h>

#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzTarget.h"

// The entry that libFuzzer calls, with a limit on the memory that an input may take. What the process has
// resident says little about that: a sanitizer's shadow and quarantine and the fuzzer's corpus are most of
// it. So the bytes that are allocated and not yet freed are counted, from the moment on when the input is
// given.

namespace {

constexpr std::size_t fixedAllowance = std::size_t{64} << 20;
constexpr std::size_t allowancePerByte = 4;

/// The most that may be allocated; nothing is limited between two inputs.
std::size_t limit = SIZE_MAX;

void countAllocation(const volatile void*, std::size_t) {
  if (limit == SIZE_MAX || __sanitizer_get_current_allocated_bytes() <= limit) return;
  limit = SIZE_MAX;
  require(false, "memory stays below 64 MiB and four times the input");
}

void ignoreFreeing(const volatile void*) {
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  __sanitizer_install_malloc_and_free_hooks(countAllocation, ignoreFreeing);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const platform::SharedBytes input(platform::Bytes(data, data + size));
  limit = __sanitizer_get_current_allocated_bytes() + fixedAllowance + allowancePerByte * size;
  fuzzTarget(input);
  limit = SIZE_MAX;
  return 0;
}
