#include "platform/FileLock.h"

#include <sys/file.h>

#include <cerrno>
#include <ctime>

#include "platform/FileError.h"

namespace platform {

void lockForReplacement(const FileHandle& file) {
  constexpr timespec pause{.tv_sec = 0, .tv_nsec = 10'000'000};
  constexpr int mostAttempts = 500;
  for (int attempt = 1; ::flock(file.descriptor(), LOCK_EX | LOCK_NB) == -1; ++attempt) {
    if (errno == EINTR) continue;
    if (errno != EWOULDBLOCK) return;
    if (attempt == mostAttempts) {
      throw FileError(file.path(), FileError::notWritten, "another program holds it locked");
    }
    ::nanosleep(&pause, nullptr);
  }
}

}  // namespace platform
