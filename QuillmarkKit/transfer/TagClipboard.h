#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "QuillmarkKit/model/TagChange.h"
#include "QuillmarkKit/model/TagField.h"
#include "platform/Pasteboard.h"

/// Copies a tag set to the pasteboard and back. The content is a JSON document with the members "version" and
/// "tags", and a summary in plain text. The optional member "uncarried" describes values that no field can
/// represent; programs that do not support it ignore it.
namespace QuillmarkKit::TagClipboard {

/// The type of the document.
inline constexpr std::string_view pasteboardType = platform::Pasteboard::documentType;

/// The version of documents that are written, and the highest version that can be read.
inline constexpr std::int64_t currentVersion = 1;

struct Payload {
  std::int64_t version;
  TagSet tags;
  UnrepresentableValues unrepresentable = {};
};

/// An error about a document of a newer version than this program supports.
class ClipboardError : public std::runtime_error {
 public:
  static ClipboardError unsupportedPayloadVersion(std::int64_t version) { return ClipboardError(version); }

  std::int64_t version() const { return version_; }

  friend bool operator==(const ClipboardError& a, const ClipboardError& b) {
    return a.version_ == b.version_;
  }

 private:
  explicit ClipboardError(std::int64_t version);

  std::int64_t version_;
};

/// An error about a text that cannot be copied because it is not UTF-8.
class EncodingError : public std::runtime_error {
 public:
  explicit EncodingError(TagField field);
};

/// Replaces the pasteboard's content with the tag set. Throws EncodingError if a text is not UTF-8; the
/// pasteboard is then unchanged. Throws platform::FileError if the content cannot be stored; the pasteboard
/// is then empty, or the message says that the old content is still there.
void copy(const TagSet& tags, platform::Pasteboard& to, const UnrepresentableValues& unrepresentable = {});

/// Returns the tag set on the pasteboard, or nothing if there is no document of the type. Throws
/// platform::JSON::DecodingError if the document is malformed, ClipboardError if it is of a newer version,
/// and platform::FileError if the pasteboard exists but cannot be used.
std::optional<TagSet> paste(const platform::Pasteboard& from);

/// Returns descriptions of the copied values that are not in the tag set because no field can represent them.
/// Throws the same errors as `paste`.
UnrepresentableValues unrepresentableValues(const platform::Pasteboard& from);

/// Returns whether the pasteboard has content of the document's type, even if it is malformed. Throws
/// platform::FileError like `paste`.
bool hasTags(const platform::Pasteboard& on);

}  // namespace QuillmarkKit::TagClipboard
