#include "platform/StandardStreams.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace platform {

namespace {

constexpr std::size_t pieceSize = 0x10000;

/// Returns the system's error number, or 0.
int writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count == -1 && errno != EINTR) return errno;
    // Repeating a write that accepts nothing and reports no error could go on for ever.
    if (count == 0) return EIO;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

int descriptorOf(Stream stream) {
  return stream == Stream::output ? STDOUT_FILENO : STDERR_FILENO;
}

}  // namespace

void StandardOutput::write(std::string_view text) {
  if (failure_ != 0) return;
  // Write a large text directly instead of copying it to the buffer.
  if (text.size() >= pieceSize / 2) {
    flush();
    if (failure_ == 0) failure_ = writeAll(STDOUT_FILENO, text);
    return;
  }
  pending_ += text;
  if (pending_.size() >= pieceSize) flush();
}

void StandardOutput::flush() {
  if (failure_ == 0) failure_ = writeAll(STDOUT_FILENO, pending_);
  pending_.clear();
}

bool isTerminal(Stream stream) {
  return ::isatty(descriptorOf(stream)) == 1;
}

std::size_t columnsOf(Stream stream) {
  constexpr std::size_t usual = 80;
  struct winsize size {};
  const bool isKnown = ::ioctl(descriptorOf(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : usual;
}

void occupyMissingStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // This opens the missing descriptor, because it is the lowest free one. As it is open for reading only,
    // printing to it fails.
    if (::fcntl(stream, F_GETFD) == -1) static_cast<void>(::open("/dev/null", O_RDONLY));
  }
}

void writeToStandardError(std::string_view text) {
  // An error here cannot be reported anywhere.
  static_cast<void>(writeAll(STDERR_FILENO, text));
}

}  // namespace platform
