#include "platform/FileOutput.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "platform/FileError.h"
#include "platform/FileReplacement.h"

namespace platform {

namespace {

/// Opens the regular file of that name. Returns nothing if it does not exist. Throws FileError if something
/// else has the name.
std::optional<FileHandle> openTarget(const std::filesystem::path& file) {
  constexpr int flags = O_RDONLY | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
  const int descriptor = retrying([&] { return ::open(file.c_str(), flags); });
  if (descriptor == -1 && errno == ENOENT) return std::nullopt;
  if (descriptor == -1 && errno == ELOOP) {
    throw FileError(file, FileError::notWritten, "it is a symbolic link");
  }
  FileHandle handle(file, descriptor);
  const mode_t mode = handle.attributes().st_mode;
  if (S_ISDIR(mode)) throw FileError(file, FileError::notWritten, "it is a folder");
  if (!S_ISREG(mode)) throw FileError(file, FileError::notWritten, "it is not a regular file");
  return handle;
}

}  // namespace

void replaceContents(const std::filesystem::path& file, ByteView contents) {
  FileReplacement replacement(file, openTarget(file));
  replacement.file().write(contents);
  replacement.commit();
}

}  // namespace platform
