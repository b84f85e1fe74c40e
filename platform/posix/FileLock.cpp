#include "platform/FileLock.h"

#include <sys/file.h>

#include <cerrno>
#include <thread>

#include "platform/FileError.h"

namespace platform {

bool lockForReplacement(const FileHandle& file, std::chrono::milliseconds& patience) {
  constexpr std::chrono::milliseconds pause{10};
  bool hasWaited = false;
  while (::flock(file.descriptor(), LOCK_EX | LOCK_NB) == -1) {
    if (errno == EINTR) continue;
    if (errno != EWOULDBLOCK) break;
    if (patience < pause) {
      throw FileError(file.path(), FileError::notWritten, "another program holds it locked");
    }
    std::this_thread::sleep_for(pause);
    patience -= pause;
    hasWaited = true;
  }
  return hasWaited;
}

}  // namespace platform
