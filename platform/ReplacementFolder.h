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

/// The folder that really holds a file, open, so that it stays the same one whatever happens to its path.
/// The caller must call `synchronise` to be sure that renames have reached the disk; the destructor tries to.
class ReplacementFolder {
 public:
  /// `path` is only used once, here. Throws FileError, which names `file`.
  ReplacementFolder(const std::filesystem::path& path, std::filesystem::path file);
  ~ReplacementFolder();
  ReplacementFolder(const ReplacementFolder&) = delete;
  ReplacementFolder& operator=(const ReplacementFolder&) = delete;

  int descriptor() const { return descriptor_.get(); }
  /// Returns whether the path leads to this folder.
  bool isAt(const std::filesystem::path& path);
  /// The attributes of what has that name here, no link followed; false, for the reason in errno, where there
  /// is nothing.
  bool find(const std::string& name, struct stat& attributes) const;
  /// Returns whether the user may remove or replace a file with these attributes in here, as far as the
  /// sticky bit is concerned.
  bool canRemove(const struct stat& file);
  /// A private folder in here, made when it is first asked for; for one replacement at a time. Throws
  /// FileError, which names `file`.
  PrivateFolder& privateFolder(const std::filesystem::path& file);
  /// Removes it, so that the next one is another.
  void dropPrivateFolder();
  /// Notes that the name of `file` in here leads to another file now; errors of `synchronise` name the last
  /// one.
  void noteRename(std::filesystem::path file) {
    isSynchronised_ = false;
    file_ = std::move(file);
  }
  /// Removes the private folder, and waits until the renames have reached the disk. A folder that may not be
  /// read cannot be waited for, which is no error. Throws FileError.
  void synchronise();

 private:
  const struct stat* attributes();

  Descriptor descriptor_;
  /// Read when they are needed first; they identify the folder.
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
