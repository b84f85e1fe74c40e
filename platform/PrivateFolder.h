#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileHandle.h"
#include "platform/ReplacementFolder.h"

namespace platform {

/// A folder of the user's alone (mode 0700, a hidden name) in another one, for files that are not complete
/// yet. It goes when this object goes, and they with it;
/// replacements in a row use it one after another. Others who may write to the folder above can put
/// something of theirs, or of the user's, in its place: that is found out before anything is done in there.
class PrivateFolder {
 public:
  /// `parent` must outlive this object. Throws FileError, which names `file`.
  PrivateFolder(const ReplacementFolder& parent, std::filesystem::path file);
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  /// Creates a file, empty, open for writing and for nobody but the user. `name` must be a literal. Throws
  /// FileError, which names `file`, as does every other error from then on.
  FileHandle create(const char* name, const std::filesystem::path& file);
  /// Gives such a file a name in the folder above, in place of what has it or, with `asNew`, when nothing
  /// has. Throws FileError.
  void moveUp(const char* name, const std::string& as, bool asNew);
  /// Removes the files that are still in here. Returns whether none is left.
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
  /// False when it has turned out that somebody has put another folder in its place.
  bool isMine_ = true;
  /// Once that is seen, nobody but this object can put anything in here.
  bool isKnownToBeEmpty_ = false;
  /// The names of the files that are in here.
  std::vector<const char*> files_;
};

}  // namespace platform
