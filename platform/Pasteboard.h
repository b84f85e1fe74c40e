#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Bytes.h"

namespace platform {

class PasteboardFolder;

/// A place that outlives the process for one piece of content in several types, for whoever comes next: what
/// was put there last counts. It is one file in a private folder of the user's. New content becomes visible
/// all at once, when every declared type has its data; whoever reads meanwhile gets the old content. Where
/// nothing can be stored or read, FileError is thrown, with the system's reason.
class Pasteboard {
 public:
  /// The user's own, the same in every login.
  static Pasteboard general();
  /// One in the folder "quillmark" below `home`/.local/state; created when something is put there.
  explicit Pasteboard(std::filesystem::path home) : home_(std::move(home)) {}

  /// The plain-text type.
  static constexpr std::string_view stringType = "public.utf8-plain-text";

  /// Makes the pasteboard empty.
  void clearContents();
  /// Starts new content: the types in which it will be given, in their order. A type's name is one line.
  void declareTypes(const std::vector<std::string>& types);
  /// Gives the new content in a declared type; false when the type was not declared. The last of the declared
  /// types stores it. When that fails, the pasteboard is empty, or the error adds that the old content is
  /// still there.
  bool setData(ByteView data, std::string_view forType);
  bool setString(std::string_view string, std::string_view forType);

  /// What is on the pasteboard in that type, or nothing. A store that is damaged, or that others could have
  /// put there, is an error.
  std::optional<Bytes> data(std::string_view forType) const;

 private:
  struct TypedData {
    std::string type;
    std::optional<Bytes> data;
  };

  void store() const;
  void replaceStore(const PasteboardFolder& folder) const;

  std::filesystem::path home_;
  /// The new content: the declared types in their order and, where they have been given, their data.
  std::vector<TypedData> content_;
};

}  // namespace platform
