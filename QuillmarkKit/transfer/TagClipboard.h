#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/model/UncarriedValues.h"
#include "platform/Pasteboard.h"

/// Carries one tag set across the pasteboard, as a JSON document with the members "version" and "tags", and a
/// plain-text summary. If there are values that no field can hold, a member "uncarried" names them; programs
/// that do not know it ignore it.
namespace QuillmarkKit::TagClipboard {

/// The type of the document.
inline constexpr std::string_view pasteboardType = "org.quillmark.tagset";

/// The document's format that is written, and the highest that is read.
inline constexpr std::int64_t currentVersion = 1;

struct Payload {
  std::int64_t version;
  TagSet tags;
  UncarriedValues uncarried = {};
};

/// A document of a newer format than this program understands.
class ClipboardError : public std::exception {
 public:
  static ClipboardError unsupportedPayloadVersion(std::int64_t version) { return ClipboardError(version); }

  std::int64_t version() const { return version_; }
  const char* what() const noexcept override { return description_.c_str(); }

  friend bool operator==(const ClipboardError& a, const ClipboardError& b) {
    return a.version_ == b.version_;
  }

 private:
  explicit ClipboardError(std::int64_t version);

  std::int64_t version_;
  std::string description_;
};

/// A text that cannot be put into a document because it is not UTF-8.
class EncodingError : public std::exception {
 public:
  explicit EncodingError(TagField field);

  TagField field() const { return field_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  TagField field_;
  std::string description_;
};

/// Replaces the pasteboard's content with the tag set. Throws EncodingError, before the pasteboard is
/// touched, if a text is not UTF-8. Throws platform::FileError if the tag set could not be stored; the
/// pasteboard is empty then, or the error adds that its old content is still there.
void copy(const TagSet& tags, platform::Pasteboard& to, const UncarriedValues& uncarried = {});

/// The tag set on the pasteboard; nothing when there is no document of the type. Throws
/// platform::JSON::DecodingError for a malformed document, ClipboardError for one of a newer format, and
/// platform::FileError for a pasteboard that is there but cannot be used.
std::optional<TagSet> paste(const platform::Pasteboard& from);

/// Returns the values of the copied file that are not in the tag set, because no field can hold them. Throws
/// as `paste` does.
UncarriedValues uncarried(const platform::Pasteboard& from);

/// Whether there is something of the document's type, whatever it holds. Throws platform::FileError likewise.
bool hasTags(const platform::Pasteboard& on);

}  // namespace QuillmarkKit::TagClipboard
