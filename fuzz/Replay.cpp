#include <cstdio>
#include <exception>
#include <filesystem>
#include <limits>

#include "fuzz/FuzzTarget.h"
#include "platform/Input.h"

// Gives a target every file of the folders that are named, each once; for builds without a fuzzer. A folder
// that is not there counts as empty: a target without findings has none for them.
int main(int argumentCount, char** arguments) {
  int inputs = 0;
  try {
    for (int i = 1; i < argumentCount; ++i) {
      if (!std::filesystem::exists(arguments[i])) continue;
      for (const auto& file : std::filesystem::directory_iterator(arguments[i])) {
        // Before it runs, because a target that fails does not come back.
        std::fprintf(stderr, "%s\n", file.path().c_str());
        fuzzTarget(platform::Input::contents(file, std::numeric_limits<std::uint32_t>::max()));
        ++inputs;
      }
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  std::printf("%d inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
