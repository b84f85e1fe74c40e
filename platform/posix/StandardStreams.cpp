#include "platform/StandardStreams.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/FileError.h"
#include "platform/FileHandle.h"

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

namespace platform::Input {

namespace {

constexpr std::size_t pieceSize = 0x10000;
constexpr int forever = -1;
// In milliseconds. The other end of a named pipe may be about to be opened.
constexpr int moment = 1000;

/// Waits until there is something to read. Returns false after the time given, or if nothing will come.
bool waitFor(int descriptor, int milliseconds) {
  struct pollfd waiting {
    .fd = descriptor, .events = POLLIN, .revents = 0
  };
  int count = ::poll(&waiting, 1, milliseconds);
  while (count == -1 && errno == EINTR) count = ::poll(&waiting, 1, milliseconds);
  return count == 1 && (waiting.revents & POLLIN) != 0;
}

void readOnto(Bytes& bytes, const std::filesystem::path& name, int descriptor, std::uint64_t limit) {
  bool mayWaitForWriter = true;
  while (bytes.size() < limit) {
    const std::size_t before = bytes.size();
    bytes.resize(before + static_cast<std::size_t>(std::min<std::uint64_t>(pieceSize, limit - before)));
    const ssize_t count = ::read(descriptor, bytes.data() + before, bytes.size() - before);
    const int failure = errno;
    bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count > 0 || (count == -1 && failure == EINTR)) continue;
    if (count == -1 && failure != EAGAIN) throw FileError(name, FileError::notRead, failure);
    // A pipe that has no writer yet reads like one that has ended.
    const bool hasEnded = count == 0;
    if (hasEnded && !(before == 0 && mayWaitForWriter && waitFor(descriptor, moment))) return;
    if (!hasEnded) waitFor(descriptor, forever);
    mayWaitForWriter = false;
  }
}

}  // namespace

Bytes contents(const std::filesystem::path& file, std::uint64_t limit) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor == -1) throw FileError(file, FileError::notRead, errno);
  const FileHandle handle(file, descriptor);
  const struct stat& attributes = handle.attributes();
  if (S_ISDIR(attributes.st_mode)) throw FileError(file, FileError::notRead, "it is a folder");
  if (!S_ISREG(attributes.st_mode) && !S_ISFIFO(attributes.st_mode)) {
    throw FileError(file, FileError::notRead, "it is neither a file nor a pipe");
  }
  Bytes bytes;
  bytes.reserve(static_cast<std::size_t>(std::min(handle.size(), limit)));
  readOnto(bytes, file, descriptor, limit);
  return bytes;
}

Bytes contentsOfStandardInput(std::uint64_t limit) {
  Bytes bytes;
  readOnto(bytes, "standard input", STDIN_FILENO, limit);
  return bytes;
}

}  // namespace platform::Input
