#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/Descriptor.h"
#include "platform/FileHandle.h"

namespace platform {

/// The folder of the pasteboard's files: "quillmark" below `home`/.local/state. It and its files are used
/// only if no other user can have put them there. Every operation throws FileError, which names the clipboard
/// instead of the file.
class PasteboardFolder {
 public:
  enum class Purpose : std::uint8_t { read, write };

  /// The name of the pasteboard in errors.
  static constexpr const char* shownName = "The clipboard";

  /// Opens the folder. To write, creates it if absent and closes it to others. Throws FileError if others
  /// could have put the folder, or a link to it, in its place, and, to read, if others have access to it.
  PasteboardFolder(const std::filesystem::path& home, Purpose purpose);

  /// Opens a file in the folder with these flags of open(2), which may create it. Throws FileError unless it
  /// is a regular file that belongs to the user; links are not followed.
  FileHandle file(const char* name, int flags) const;
  /// Renames the file `from` to `to`, and replaces a file that has that name.
  void rename(const char* from, const char* to) const;
  /// Removes the file if it exists.
  void remove(const char* name) const;

  /// Returns whether something of that name is in the folder, or may be; false if the folder does not exist.
  static bool mayHold(const std::filesystem::path& home, const char* name);

 private:
  Descriptor folder_;
};

}  // namespace platform
