#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/base/Bytes.h"

namespace platform {

/// Holds a document and a summary of it in plain text, and outlives the process. It is one file in a private
/// folder of the user, which is used only if no other user can have put it there. New content replaces the
/// old all at once; until then, readers get the old content.
class Pasteboard {
 public:
  /// Returns the user's pasteboard, which all logins share.
  static Pasteboard general();
  /// Uses the folder "quillmark" below `home`/.local/state, which is created when something is stored.
  explicit Pasteboard(std::filesystem::path home) : home_(std::move(home)) {}

  /// The type under which a document is stored.
  static constexpr std::string_view documentType = "org.quillmark.tagset";

  /// Replaces the content. Throws FileError if it cannot be stored; either the pasteboard is then empty, or
  /// the error adds that the old content is still there.
  void store(std::string_view document, std::string_view summary) const;
  /// Returns the document, or nothing if there is none. Throws FileError if the stored file cannot be read or
  /// is damaged, or if other users could have put it there.
  std::optional<Bytes> document() const;

 private:
  std::filesystem::path home_;
};

/// Puts the text on the clipboard of the desktop that the process was started in, so that any program can
/// paste it. Uses the first installed clipboard program that accepts the text. Does nothing without a desktop
/// or such a program. Takes at most about a second for each program that it tries. The caller must make sure
/// that a write to a closed pipe does not end the process.
void putOnDesktopClipboard(std::string_view text);

}  // namespace platform
