#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/Descriptor.h"
#include "platform/FileHandle.h"

/// Operations on files and folders that each system does in its own way. Where a system has none, the plain
/// version says so, and the caller has another way. Failures leave their reason in errno.
namespace platform::SystemFiles {

/// Returns the path of an open file without any link in it, if the system knows one. It may be out of date
/// already.
std::optional<std::filesystem::path> pathOf(const FileHandle& file);

/// Returns the name under which a folder has the open file that was found there as `name`. They differ where
/// names that differ in case or in their Unicode form lead to the same file.
std::string nameAsStored(const FileHandle& file, const std::string& name);

/// Opens a folder that the user may search but not read, to use names in it. Contains no descriptor if that
/// fails.
Descriptor openFolderForSearch(const std::filesystem::path& folder);

/// Returns whether the folder contains nothing, or nothing if it cannot be read. Moves the descriptor's
/// reading position or opens another one.
std::optional<bool> isEmpty(int folder);

/// Returns whether the user may write to the open file, which `folder` has under that name.
bool mayWrite(const FileHandle& file, int folder, const std::string& name);

/// Copies up to `count` bytes inside the kernel, from the offset in `source` to the position of `target`.
/// Returns how many; 0 or -1 if the kernel cannot copy these files.
std::int64_t copyInsideKernel(int source, std::uint64_t offset, int target, std::size_t count);

/// Renames a file if nothing has the new name, in one step. Returns false otherwise; errno is EEXIST if
/// something has it, and ENOSYS, ENOTSUP, EINVAL or EPERM if this cannot be done in one step here.
bool renameAsNew(int fromFolder, const char* from, int toFolder, const char* to);

/// Waits until the file's data and attributes, or the folder's names, are on the disk, and not only in its
/// cache. Returns 0, or -1.
int synchronise(int descriptor);

}  // namespace platform::SystemFiles
