#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/base/Bytes.h"

/// The ID3v2 standards as plain values: the meaning of a tag of any version, and the bytes of each frame, so
/// that unchanged frames can be written as they were. Texts are UTF-8. Several values of one frame are one
/// text, separated by U+0000.
namespace ID3v2 {

struct Frame;

/// A text information frame other than TXXX (ID3v2.4.0 frames §4.2).
struct Text {
  std::string text;

  bool operator==(const Text&) const = default;
};

/// TXXX (ID3v2.4.0 frames §4.2.6).
struct UserText {
  std::string description;
  std::string text;

  bool operator==(const UserText&) const = default;
};

/// A comment (COMM) or lyrics (USLT) (ID3v2.4.0 frames §4.8, §4.10).
struct LanguageText {
  /// Three bytes, as in the frame.
  std::string language;
  std::string description;
  std::string text;

  bool operator==(const LanguageText&) const = default;
};

/// An attached picture (ID3v2.4.0 frames §4.14). A three-letter format of v2.2 is converted to a MIME type.
struct Picture {
  std::string mimeType;
  std::uint8_t type = 0;
  std::string description;
  platform::SharedBytes data;

  bool operator==(const Picture&) const = default;
};

/// A URL link frame other than WXXX (ID3v2.4.0 frames §4.3).
struct URL {
  std::string url;

  bool operator==(const URL&) const = default;
};

/// A chapter: CHAP of the chapter frame addendum. Times are in milliseconds, offsets in bytes; FFFFFFFF means
/// no offset.
struct Chapter {
  std::string elementID;
  std::uint32_t startTime = 0;
  std::uint32_t endTime = 0;
  std::uint32_t startOffset = 0;
  std::uint32_t endOffset = 0;
  std::vector<Frame> frames;

  bool operator==(const Chapter&) const;
};

/// A table of contents: CTOC of the chapter frame addendum.
struct TableOfContents {
  std::string elementID;
  std::uint8_t flags = 0;
  std::vector<std::string> childElementIDs;
  std::vector<Frame> frames;

  bool operator==(const TableOfContents&) const;
};

/// Content of any other kind: the bytes after the frame header, in the form of v2.3.
struct Opaque {
  platform::SharedBytes bytes;

  bool operator==(const Opaque&) const = default;
};

/// Content that cannot be understood: the frame can only be written as it was.
struct Unread {
  bool operator==(const Unread&) const = default;
};

using Content =
    std::variant<Opaque, Text, UserText, LanguageText, Picture, URL, Chapter, TableOfContents, Unread>;

/// One frame. Two frames are equal if they have the same meaning, that is identifier, content, flags and
/// group. Their original bytes may differ.
struct Frame {
  /// The four letters of v2.3 and v2.4. Identifiers of v2.2 are mapped to these.
  std::string identifier;
  Content content;
  /// The flags at their v2.3 positions (ID3v2.3.0 §3.3.1). Compression and unsynchronisation are undone.
  std::uint16_t flags = 0;
  /// The group byte, if `flags` contain the grouping flag. Zero for opaque frames, whose bytes contain it.
  std::uint8_t group = 0;
  /// The whole frame, header included, as it can be written into a tag of the version that it was read from.
  /// Empty for frames of v2.2. Code that changes another member must clear this one.
  platform::SharedBytes original = {};

  friend bool operator==(const Frame& a, const Frame& b) {
    return a.identifier == b.identifier && a.flags == b.flags && a.group == b.group && a.content == b.content;
  }
};

inline bool Chapter::operator==(const Chapter&) const = default;
inline bool TableOfContents::operator==(const TableOfContents&) const = default;

struct Tag {
  /// The major version of the tag that was read: 2, 3 or 4.
  std::uint8_t version = 3;
  /// The experimental flag in the tag's header (ID3v2.3.0 §3.1).
  bool isExperimental = false;
  /// The frames in the order of the file.
  std::vector<Frame> frames;

  bool operator==(const Tag&) const = default;
};

}  // namespace ID3v2
