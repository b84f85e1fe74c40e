#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ID3v2/Tag.h"

/// Compares tags exactly. Differences of form are ignored: 03/12 and 3/12, (17) and Rock, blanks at the ends,
/// encodings, unknown languages.
namespace QuillmarkKit::TagDifferences {

/// Data of one tag that another tag lacks or has with another meaning.
struct Difference {
  enum class Kind : std::uint8_t {
    /// The frame is missing.
    frame,
    /// The frame has lost `flag`.
    flag,
    /// The user text, comment, lyrics or picture is missing.
    userText,
    languageText,
    picture,
    /// The comment or lyrics are there, but not with this description, or not in this language.
    description,
    language,
    /// The picture is there, but with another type, that of `other`, or without its description.
    pictureType,
    pictureDescription,
    /// The values of all text frames with the identifier of `frame` differ.
    text,
    /// The date differs, whatever frames contain it; there is no `frame`.
    date,
  };

  Kind kind;
  /// The frame in the first tag.
  const ID3v2::Frame* frame = nullptr;
  std::uint16_t flag = 0;
  /// The picture in the second tag.
  const ID3v2::Picture* other = nullptr;
  /// The values in the two tags, for `text` and `date`.
  std::string before = {};
  std::string after = {};
};

/// Returns the data of `expected` that `found` lacks or has with another meaning, in the order of the frames,
/// in a time in proportion to both tags. The tags must outlive the result.
std::vector<Difference> between(const ID3v2::Tag& expected, const ID3v2::Tag& found);

}  // namespace QuillmarkKit::TagDifferences
