#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Bytes.h"

namespace platform {

/// A place that outlives the process for one piece of content in several types, for whoever comes next: what
/// was put there last counts. It is one file in a private folder of the user's. New content becomes visible
/// all at once, when every declared type has its data; whoever reads meanwhile gets the old content. A store
/// that is damaged or belongs to another user is empty to read.
class Pasteboard {
 public:
  /// The user's own, the same in every login.
  static Pasteboard general();
  /// One in the folder "quillmark" below `home`/.local/state; created when something is put there.
  explicit Pasteboard(std::filesystem::path home) : home_(std::move(home)) {}

  /// The plain-text type.
  static constexpr std::string_view stringType = "public.utf8-plain-text";

  /// Starts new content without any types.
  void clearContents();
  /// Tells the types in which the new content will be given, in their order. A type's name is one line.
  void declareTypes(const std::vector<std::string>& types);
  /// Gives the new content in a declared type. The last of the declared types stores it: false means that it
  /// could not be stored, for the reason in `failure()`, and that the pasteboard is empty instead. Throws
  /// FileError when it could not even be emptied.
  bool setData(ByteView data, std::string_view forType);
  bool setString(std::string_view string, std::string_view forType);
  /// Why the content could not be stored, as a line for people.
  const std::string& failure() const { return failure_; }

  /// What is on the pasteboard in that type, or nothing.
  std::optional<Bytes> data(std::string_view forType) const;

 private:
  struct TypedData {
    std::string type;
    std::optional<Bytes> data;
  };

  bool store();
  void replaceStore(int folder) const;

  std::filesystem::path home_;
  /// The new content: the declared types in their order and, where they have been given, their data.
  std::vector<TypedData> content_;
  std::string failure_;
};

}  // namespace platform
