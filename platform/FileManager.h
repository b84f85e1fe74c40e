#pragma once

#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>

#include "platform/Bytes.h"
#include "platform/FileHandle.h"

namespace platform {

/// A private directory (mode 0700) beside the file that a link chain from `file` ends at, so on the same
/// volume: the place to assemble that file's replacement. It goes, with everything in it, when this object
/// goes.
class ItemReplacementDirectory {
 public:
  /// Throws FileError, which names `file`.
  explicit ItemReplacementDirectory(const std::filesystem::path& file);
  ~ItemReplacementDirectory();
  ItemReplacementDirectory(const ItemReplacementDirectory&) = delete;
  ItemReplacementDirectory& operator=(const ItemReplacementDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
  /// The open folder above, where the path needs it; else -1.
  int folder_ = -1;
};

/// What the program asks of the file system beyond open files.
namespace FileManager {

/// Puts `replacement` in the place of `target` in one step, after everything of it has reached the disk. The
/// target's permission bits, its owner and group where the user may set them, its extended attributes and its
/// access-control list pass to the replacement. Where `target` is a symbolic link, what it points to is
/// replaced; where there is no `target`, the replacement moves there as it is. Throws FileError; then
/// `target` is as it was.
void replaceItem(const std::filesystem::path& target, const std::filesystem::path& replacement);

/// The modification date to the nanosecond; nothing where the file's attributes cannot be read.
std::optional<timespec> modificationDate(const std::filesystem::path& file);
/// Sets it, or leaves it where the system refuses.
void setModificationDate(const std::filesystem::path& file, timespec date);

/// Writes `file` as a whole: what `writing` puts into the handle that it is given takes the file's place as
/// `replaceItem` does it, or becomes a new file; when anything fails, `file` is as it was. Throws FileError.
void writeAtomically(const std::filesystem::path& file, const std::function<void(FileHandle&)>& writing);

/// Creates every missing folder above `file`. Throws FileError, which names `file`.
void createDirectoriesAbove(const std::filesystem::path& file);

/// A regular file's bytes, its first `limit` where it has more. Throws FileError.
Bytes contents(const std::filesystem::path& file, std::uint64_t limit);

/// Whether both paths lead to one and the same existing file.
bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace FileManager

}  // namespace platform
