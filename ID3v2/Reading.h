#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ID3v2/Tag.h"

namespace ID3v2 {

/// A part of a tag that cannot be understood.
struct UnreadablePart {
  /// The identifier of the frame, mapped to v2.3 if it has a counterpart there. Empty if the part can contain
  /// any frames.
  std::string identifier;
  /// The name of the part in messages, without a full stop, such as "the encrypted frame TIT2" or "the data
  /// after frame TALB".
  std::string what;
  /// Whether the part is a frame of the tag with content `Unread`, which can be written as it was.
  bool isFrame = false;

  bool operator==(const UnreadablePart&) const = default;
};

/// The result of reading the tag at the start of a file.
struct Reading {
  Tag tag;
  /// The length of the tag in bytes, header and footer included, which is the offset of the audio.
  std::uint64_t length = 0;
  std::vector<UnreadablePart> unreadable;
};

/// Returns the length of the tag in bytes, header and footer included, from the first ten bytes of the file.
/// The file may be shorter than that. Returns nothing if no tag of v2.2, v2.3 or v2.4 starts there.
std::optional<std::uint64_t> tagLength(platform::ByteView header);

/// Reads the tag at the start of the bytes, tolerating the errors of known programs. Returns nothing if there
/// is no tag. A tag that is longer than the bytes is read up to their end, and `unreadable` names its missing
/// end. Pictures and opaque frames that are stored unchanged share the bytes and keep them alive.
std::optional<Reading> read(const platform::SharedBytes& bytes);

}  // namespace ID3v2
