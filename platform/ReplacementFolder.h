#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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

/// A hidden folder inside another one, accessible to the user only (mode 0700), for files that are not
/// complete yet. Replacements in a row use it one after another. The destructor removes it and its files.
///
/// Others with write access to the parent folder can put something of theirs, or of the user's, in its place.
/// That is detected before anything is done in the folder.
class PrivateFolder {
 public:
  /// Creates the folder in `parent`, which must outlive this object. Throws FileError, which names `file`.
  PrivateFolder(const ReplacementFolder& parent, std::filesystem::path file);
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  /// Creates an empty file, open for writing and accessible to the user only. `name` must be a literal.
  /// Throws FileError, which names `file`, as does every later error.
  FileHandle create(const char* name, const std::filesystem::path& file);
  /// Moves such a file to the parent folder under the name `as`. Replaces a file that has that name, but with
  /// `asNew`, the name must be free. Throws FileError.
  void moveUp(const char* name, const std::string& as, bool asNew);
  /// Removes the files that are still in the folder. Returns whether all of them could be removed.
  bool removeFiles();

 private:
  [[noreturn]] void fail() const;
  [[noreturn]] void failForAnother();
  void requireEmpty();
  void remove() const;

  const ReplacementFolder& parent_;
  std::filesystem::path file_;
  std::string name_;
  Descriptor descriptor_;
  struct stat attributes_ {};
  /// False after another folder was found in its place.
  bool isMine_ = true;
  /// Set when the folder was checked. From then on, only this object can put files in it.
  bool isKnownToBeEmpty_ = false;
  /// The names of the files in the folder.
  std::vector<const char*> files_;
};

}  // namespace platform
