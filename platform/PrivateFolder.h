#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "platform/FileHandle.h"
#include "platform/ReplacementFolder.h"

namespace platform {

/// A folder of the user's alone (mode 0700, a hidden name) in another one, for one file that is not complete
/// yet. It goes when this object goes, and the file with it. Others who may write to the folder above can put
/// something of theirs, or of the user's, in its place: that is found out before anything is done in there.
class PrivateFolder {
 public:
  /// `parent` must outlive this object. Throws FileError, which names `file`.
  PrivateFolder(const ReplacementFolder& parent, std::filesystem::path file);
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  /// Creates the file, empty, open for writing and for nobody but the user; once. Throws FileError.
  FileHandle create();
  /// Gives the file the name in the folder above, in place of what has it or, with `asNew`, when nothing has.
  /// Throws FileError.
  void moveUp(const std::string& name, bool asNew);

 private:
  [[noreturn]] void fail() const;
  [[noreturn]] void failForAnother() const;
  void requireEmpty() const;

  const ReplacementFolder& parent_;
  std::filesystem::path file_;
  std::string name_;
  Descriptor descriptor_;
  struct stat attributes_ {};
  bool hasFile_ = false;
};

}  // namespace platform
