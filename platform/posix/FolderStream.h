#pragma once

#include <dirent.h>

#include <memory>
#include <optional>

#include "platform/Descriptor.h"

namespace platform {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
/// A folder that is open for reading its names.
using FolderStream = std::unique_ptr<DIR, CloseFolder>;

/// Returns a stream for the open folder, or nothing, with the reason in errno.
inline FolderStream streamOf(Descriptor folder) {
  DIR* stream = folder ? ::fdopendir(folder.get()) : nullptr;
  if (stream != nullptr) folder.release();
  return FolderStream(stream);
}

/// Returns whether the open folder is empty, or nothing, with the reason in errno, if it cannot be read.
std::optional<bool> isEmptyFolder(int folder);

}  // namespace platform
