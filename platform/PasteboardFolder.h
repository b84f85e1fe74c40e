#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/Descriptor.h"
#include "platform/FileHandle.h"

namespace platform {

/// The folder of a pasteboard's files, "quillmark" below `home`/.local/state, used in the certainty that
/// nobody but the user has put it or anything in it there. Every operation throws FileError, which speaks of
/// the clipboard whichever of its files is the reason.
class PasteboardFolder {
 public:
  enum class Purpose : std::uint8_t { read, write };

  /// What errors call the pasteboard.
  static constexpr const char* shownName = "The clipboard";

  /// Fails when others could have put the folder, or a link to it, where it is. To read, it must be closed to
  /// others as it is; to write, it is made and closed.
  PasteboardFolder(const std::filesystem::path& home, Purpose purpose);

  /// The user's own regular file of that name, and no link; `flags` are those of open, and may create it.
  FileHandle file(const char* name, int flags) const;
  /// Gives the file `from` the name `to`, in place of what has it.
  void rename(const char* from, const char* to) const;
  /// There need not be such a file.
  void remove(const char* name) const;

  /// Whether there is, or may be, something of that name in the folder, which need not be there itself.
  static bool mayHold(const std::filesystem::path& home, const char* name);

 private:
  Descriptor folder_;
};

}  // namespace platform
