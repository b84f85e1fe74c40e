#include "platform/FileManager.h"

#include <system_error>

#include "platform/FileError.h"

namespace platform::FileManager {

void createDirectoriesAbove(const std::filesystem::path& file) {
  if (!file.has_parent_path()) return;
  std::error_code failure;
  std::filesystem::create_directories(file.parent_path(), failure);
  if (failure) throw FileError(file, FileError::notWritten, failure.value());
}

}  // namespace platform::FileManager
