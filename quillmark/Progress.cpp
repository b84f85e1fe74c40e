#include "quillmark/Progress.h"

#include <string>

#include "platform/FileError.h"

namespace quillmark {

namespace {

/// Returns the number with commas between thousands.
std::string grouped(std::size_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
  return digits;
}

}  // namespace

void Progress::next(const std::filesystem::path& file) {
  constexpr std::chrono::milliseconds pause(100);
  ++count_;
  const Clock::time_point now = Clock::now();
  if (now < due_ || !console_.errorIsTerminal()) return;
  due_ = now + pause;
  console_.showStatus(grouped(count_) + " of " + grouped(fileCount_) + "  " +
                      platform::lastPathComponent(file));
}

}  // namespace quillmark
