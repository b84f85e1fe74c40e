#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Bytes.h"

namespace platform {

class PasteboardFolder;

/// Holds one piece of content in several types, and outlives the process. It is one file in a private folder
/// of the user. New content replaces the old all at once, after every declared type has its data; until then,
/// readers get the old content. Operations throw FileError, with the system's reason, if nothing can be
/// stored or read.
class Pasteboard {
 public:
  /// Returns the user's pasteboard, which all logins share.
  static Pasteboard general();
  /// Uses the folder "quillmark" below `home`/.local/state, which is created when something is stored.
  explicit Pasteboard(std::filesystem::path home) : home_(std::move(home)) {}

  /// The plain-text type.
  static constexpr std::string_view stringType = "public.utf8-plain-text";

  /// Makes the pasteboard empty.
  void clearContents();
  /// Starts new content. `types` are the types in which it will be set, in their order. The name of a type
  /// must not contain a line feed.
  void declareTypes(const std::vector<std::string>& types);
  /// Sets the data of a declared type. Returns false if the type was not declared. Stores the content once
  /// all declared types have data. If that fails, either the pasteboard is empty, or the error adds that the
  /// old content is still there.
  bool setData(ByteView data, std::string_view forType);
  bool setString(std::string_view string, std::string_view forType);

  /// Returns the content in the given type, or nothing if there is none. Throws FileError if the stored file
  /// is damaged, or if other users could have put it there.
  std::optional<Bytes> data(std::string_view forType) const;

 private:
  struct TypedData {
    std::string type;
    std::optional<Bytes> data;
  };

  void store() const;
  void replaceStore(const PasteboardFolder& folder) const;

  std::filesystem::path home_;
  /// The new content: the declared types in their order, with the data that has been set.
  std::vector<TypedData> content_;
};

/// Puts the text on the clipboard of the desktop that the process was started in, so that any program can
/// paste it. Uses the first installed clipboard program that accepts the text. Does nothing without a desktop
/// or such a program. Takes at most about a second for each program that it tries. The caller must make sure
/// that a write to a closed pipe does not end the process.
void putOnDesktopClipboard(std::string_view text);

}  // namespace platform
