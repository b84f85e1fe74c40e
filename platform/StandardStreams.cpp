#include "platform/StandardStreams.h"

#include <unistd.h>

#include <cerrno>

namespace platform {

namespace {

constexpr std::size_t pieceSize = 0x10000;

/// Gives the system's error number, or 0.
int writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count == -1 && errno != EINTR) return errno;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

}  // namespace

void StandardOutput::write(std::string_view text) {
  if (failure_ != 0) return;
  pending_ += text;
  if (pending_.size() >= pieceSize) flush();
}

void StandardOutput::flush() {
  if (failure_ == 0) failure_ = writeAll(STDOUT_FILENO, pending_);
  pending_.clear();
}

void writeToStandardError(std::string_view text) {
  // There is nobody left to tell when this fails.
  static_cast<void>(writeAll(STDERR_FILENO, text));
}

}  // namespace platform
