#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileHandle.h"
#include "platform/ReplacementFolder.h"

namespace platform {

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
