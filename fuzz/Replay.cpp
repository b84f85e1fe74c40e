#include <cstdio>
#include <filesystem>
#include <limits>
#include <span>

#include "fuzz/FuzzTarget.h"
#include "platform/StandardStreams.h"

// Runs a target once with every file in the given folders. Used in builds without a fuzzer. A missing folder
// counts as empty: a target without findings has no folder for them.
int main(int argumentCount, char** arguments) {
  int inputs = 0;
  for (const char* folder : std::span(arguments, static_cast<std::size_t>(argumentCount)).subspan(1)) {
    if (!std::filesystem::exists(folder)) continue;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      // Printed before the run, because a target that fails does not return.
      std::fprintf(stderr, "%s\n", file.path().c_str());
      fuzzTarget(platform::Input::contents(file, std::numeric_limits<std::uint32_t>::max()));
      ++inputs;
    }
  }
  std::printf("%d inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
