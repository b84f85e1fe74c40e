#include <sanitizer/allocator_interface.h>

#include "fuzz/FuzzTarget.h"

// The function that libFuzzer calls. It limits the memory that an input may take. The resident memory of the
// process is no measure of that: most of it is the sanitizer's shadow and quarantine and the fuzzer's corpus.
// So this counts the bytes that are allocated and not yet freed while the input is processed.

namespace {

/// The largest number of bytes that may be allocated. Between two inputs there is no limit.
std::size_t limit = SIZE_MAX;

void countAllocation(const volatile void*, std::size_t) {
  if (limit == SIZE_MAX || __sanitizer_get_current_allocated_bytes() <= limit) return;
  limit = SIZE_MAX;
  require(false, "memory stays below 64 MiB and four times the input");
}

[[maybe_unused]] const int hooks =
    __sanitizer_install_malloc_and_free_hooks(countAllocation, [](const volatile void*) {});

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const platform::SharedBytes input(platform::Bytes(data, data + size));
  limit = __sanitizer_get_current_allocated_bytes() + (std::size_t{64} << 20) + 4 * size;
  fuzzTarget(input);
  limit = SIZE_MAX;
  return 0;
}
