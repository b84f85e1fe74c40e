#pragma once

#include <dirent.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/FileHandle.h"

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

/// Operations on files and folders that each system does in its own way. If a system has no such operation,
/// the plain version fails or returns nothing, and the caller uses another way. Failures leave the reason in
/// errno.
namespace platform::SystemFiles {

/// Returns the path of an open file with all links resolved, or nothing if the system does not report it. The
/// path may already be out of date.
std::optional<std::filesystem::path> pathOf(const FileHandle& file);

/// Returns the name as the folder stores it, of an open file that was found there as `name`. The two differ
/// if the file system ignores case or the Unicode form of names.
std::string nameAsStored(const FileHandle& file, const std::string& name);

/// Opens a folder that the user may search but not read, so that names in it can be used. Returns no
/// descriptor if that fails.
Descriptor openFolderForSearch(const std::filesystem::path& folder);

/// Returns whether the folder is empty, or nothing if it cannot be read. May move the reading position of the
/// descriptor.
std::optional<bool> isEmpty(int folder);

/// Returns whether the user may write to the open file, which has this name in `folder`.
bool mayWrite(const FileHandle& file, int folder, const std::string& name);

/// Copies up to `count` bytes inside the kernel, from the offset in `source` to the position of `target`.
/// Returns the number of bytes copied; 0 or -1 if the kernel cannot copy these files.
std::int64_t copyInsideKernel(int source, std::uint64_t offset, int target, std::size_t count);

/// Lets `target` share the blocks of `source` from one offset to the end of `source`, without moving a
/// position. Returns false if the file system cannot do that, and if an offset is not on a block boundary.
bool shareBlocks(int source, std::uint64_t from, int target, std::uint64_t to);

/// Renames a file in one step, unless the new name is taken. Returns false if it is not renamed; errno is
/// EEXIST if the name is taken, and ENOSYS, ENOTSUP, EINVAL or EPERM if the check and the rename are not
/// possible in one step.
bool renameAsNew(int fromFolder, const char* from, int toFolder, const char* to);

/// Waits until the file's data and attributes, or the folder's names, are on the disk and not only in its
/// cache. Returns 0 or -1.
int synchronise(int descriptor);

}  // namespace platform::SystemFiles
