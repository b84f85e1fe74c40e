#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/Descriptor.h"
#include "platform/FileHandle.h"

namespace platform {

class PrivateFolder;

/// The folder that really holds a file. It is kept open, so that it stays the same folder even if its path
/// changes. The caller must call `synchronise` to be sure that renames have reached the disk; the destructor
/// only tries to.
class ReplacementFolder {
 public:
  /// Opens the folder. `path` is not used again. Throws FileError, which names `file`.
  ReplacementFolder(const std::filesystem::path& path, std::filesystem::path file);
  ~ReplacementFolder();
  ReplacementFolder(const ReplacementFolder&) = delete;
  ReplacementFolder& operator=(const ReplacementFolder&) = delete;

  int descriptor() const { return descriptor_.get(); }
  /// Returns whether the path leads to this folder.
  bool isAt(const std::filesystem::path& path);
  /// Reads the attributes of what has this name in the folder, without following a link. Returns false, with
  /// the reason in errno, if there is nothing.
  bool find(const std::string& name, struct stat& attributes) const;
  /// Returns whether the folder's sticky bit allows the user to remove or replace a file with these
  /// attributes.
  bool canRemove(const struct stat& file);
  /// Returns a private folder in this folder, created by the first call. It serves one replacement at a time.
  /// Throws FileError, which names `file`.
  PrivateFolder& privateFolder(const std::filesystem::path& file);
  /// Removes the private folder, so that the next call of `privateFolder` creates another one.
  void dropPrivateFolder();
  /// Notes that the name of `file` in this folder leads to another file now. Errors of `synchronise` name the
  /// last file noted.
  void noteRename(std::filesystem::path file) {
    isSynchronised_ = false;
    file_ = std::move(file);
  }
  /// Removes the private folder, and waits until the renames have reached the disk. Does not wait for a
  /// folder that the user may not read, which is no error. Throws FileError.
  void synchronise();

 private:
  const struct stat* attributes();

  Descriptor descriptor_;
  /// Read when first needed; they identify the folder.
  std::optional<struct stat> attributes_;
  bool isReadable_ = true;
  bool isSynchronised_ = true;
  std::filesystem::path file_;
  std::unique_ptr<PrivateFolder> private_;
};

/// Returns whether both are the attributes of the same file.
inline bool isSameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace platform
