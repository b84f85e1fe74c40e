#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/base/Bytes.h"

/// The ID3v2 standards as plain values: what a tag of any version means, and the bytes of each frame, so that
/// frames that do not change can be written as they were. Texts are UTF-8; several values of one frame are
/// one text with U+0000 between them.
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
  /// Three bytes, as they stand in the frame.
  std::string language;
  std::string description;
  std::string text;

  bool operator==(const LanguageText&) const = default;
};

/// An attached picture (ID3v2.4.0 frames §4.14); a three-letter format of v2.2 is a MIME type here.
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

/// A chapter: CHAP of the chapter frame addendum. Times in milliseconds; offsets in bytes, FFFFFFFF for none.
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

/// Everything else: what follows the frame header, in the form that ID3v2.3 gives it.
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

/// One frame. Two frames are equal when they mean the same: identifier, content and flags, in whatever form
/// they were written.
struct Frame {
  /// The four letters of v2.3 and v2.4; those of v2.2 are mapped.
  std::string identifier;
  Content content;
  /// The two flag bytes at their v2.3 places (ID3v2.3.0 §3.3.1), compression and unsynchronisation undone.
  std::uint16_t flags = 0;
  /// The byte that `flags` say names the frame's group; zero for opaque frames, whose bytes hold it.
  std::uint8_t group = 0;
  /// The whole frame, header included, as it can be written into a tag of the version that it was read from;
  /// empty for frames of v2.2. Code that changes anything above must make this empty.
  platform::SharedBytes original = {};

  friend bool operator==(const Frame& a, const Frame& b) {
    return a.identifier == b.identifier && a.flags == b.flags && a.group == b.group && a.content == b.content;
  }
};

inline bool Chapter::operator==(const Chapter&) const = default;
inline bool TableOfContents::operator==(const TableOfContents&) const = default;

struct Tag {
  /// The major version that the tag was read from: 2, 3 or 4.
  std::uint8_t version = 3;
  /// The flag for experimental tags in the tag's header (ID3v2.3.0 §3.1).
  bool isExperimental = false;
  /// In file order.
  std::vector<Frame> frames;

  bool operator==(const Tag&) const = default;
};

}  // namespace ID3v2
