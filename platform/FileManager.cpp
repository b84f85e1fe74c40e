#include "platform/FileManager.h"

#include <algorithm>
#include <system_error>

#include "platform/FileError.h"
#include "platform/FileHandle.h"

namespace platform::FileManager {

void createDirectoriesAbove(const std::filesystem::path& file) {
  if (!file.has_parent_path()) return;
  std::error_code failure;
  std::filesystem::create_directories(file.parent_path(), failure);
  if (failure) throw FileError(file, FileError::notWritten, failure.value());
}

Bytes contents(const std::filesystem::path& file, std::uint64_t limit) {
  FileHandle handle = FileHandle::forReading(file);
  return handle.read(std::min(handle.size(), limit));
}

}  // namespace platform::FileManager
