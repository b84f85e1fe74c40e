#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ID3v2/Tag.h"

namespace QuillmarkKit {

/// The frames of a tag, so that looking for all frames of another tag takes time in proportion to both.
/// Refers to the tag, which must outlive it. Texts are compared in the form of PlainValues and found by
/// hashes, which take less memory.
class FrameIndex {
 public:
  explicit FrameIndex(const ID3v2::Tag& tag);

  /// Returns a frame that the predicate accepts among those that can be equal to `frame`, or nullptr.
  template <class Predicate>
  const ID3v2::Frame* find(const ID3v2::Frame& frame, Predicate isSame) const {
    const auto [first, last] = frames_.equal_range(hashOf(frame));
    const auto found = std::find_if(first, last, [&](const auto& entry) { return isSame(*entry.second); });
    return found != last ? found->second : nullptr;
  }
  /// Returns whether there is a user text with that description and these values.
  bool hasUserText(const ID3v2::UserText& text) const;
  /// Returns whether there is a comment, or lyrics, like those in `frame`, whose description and language may
  /// differ.
  bool hasText(const ID3v2::Frame& frame, const ID3v2::LanguageText& text) const;
  bool hasTextWithDescription(const ID3v2::Frame& frame, const ID3v2::LanguageText& text) const;
  bool hasTextInLanguage(const ID3v2::Frame& frame, const ID3v2::LanguageText& text) const;
  /// Returns the first picture with the data, or nullptr.
  const ID3v2::Picture* pictureOf(const platform::SharedBytes& data) const;
  /// Returns whether there is a picture with the same data, type and description.
  bool hasPicture(const ID3v2::Picture& picture) const;
  /// Returns the text of all text frames of that identifier.
  std::string textOf(const std::string& identifier) const;

 private:
  static std::size_t hashOf(const ID3v2::Frame& frame);

  void note(const ID3v2::Frame& frame, const ID3v2::Text& text);
  void note(const ID3v2::Frame& frame, const ID3v2::UserText& text);
  void note(const ID3v2::Frame& frame, const ID3v2::LanguageText& text);
  void note(const ID3v2::Frame& frame, const ID3v2::Picture& picture);
  template <class Content>
  void note(const ID3v2::Frame&, const Content&) {}

  std::unordered_multimap<std::size_t, const ID3v2::Frame*> frames_;
  std::unordered_map<std::size_t, const ID3v2::Picture*> pictures_;
  std::unordered_multimap<std::size_t, const ID3v2::Picture*> picturesInAll_;
  std::unordered_set<std::size_t> texts_;
  std::unordered_map<std::string, std::vector<const ID3v2::Text*>> textFrames_;
};

}  // namespace QuillmarkKit
