#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ID3v2/Tag.h"

namespace ID3v2 {

/// A part of a tag that cannot be understood.
struct UnreadablePart {
  /// Of the frame, as v2.3 has it where it does; empty for what can be any frames.
  std::string identifier;
  /// Named for people, without a full stop, such as "the encrypted frame TIT2" or "what stands behind TALB in
  /// its tag".
  std::string what;
  /// Whether it is a frame of the tag, with content `Unread`, which can be written as it was.
  bool isFrame = false;

  bool operator==(const UnreadablePart&) const = default;
};

/// What the bytes at the start of a file hold.
struct Reading {
  Tag tag;
  /// The bytes from the tag's header to the first one of the audio, a footer included.
  std::uint64_t length = 0;
  std::vector<UnreadablePart> unreadable;
};

/// The bytes that the tag takes in its file, header and footer included, told by the header, the first ten
/// bytes of the file; nothing where no tag of v2.2, v2.3 or v2.4 starts. The file may be shorter.
std::optional<std::uint64_t> tagLength(platform::ByteView header);

/// The tag at the start of the bytes, read as robust readers read what real programs wrote. Nothing where no
/// tag starts. A tag that claims more bytes than there are is read as far as it goes, and told in
/// `unreadable`. Pictures and opaque frames keep the bytes alive where they stand there as they are.
std::optional<Reading> read(const platform::SharedBytes& bytes);

}  // namespace ID3v2
