#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ID3v2/Tag.h"

namespace QuillmarkKit {

/// An index of the frames of a tag. To look for all frames of another tag takes time in proportion to both
/// tags. The tag must outlive the index. Texts are compared in the form of PlainValues. The index contains
/// hashes of texts instead of the texts, to take less memory.
class FrameIndex {
 public:
  explicit FrameIndex(const ID3v2::Tag& tag);

  /// Returns a frame that the predicate accepts, or nullptr. The predicate is called only for frames with the
  /// same hash of identifier and content as `frame`.
  template <class Predicate>
  const ID3v2::Frame* find(const ID3v2::Frame& frame, Predicate isSame) const {
    const auto [first, last] = frames_.equal_range(hashOf(frame));
    const auto found = std::find_if(first, last, [&](const auto& entry) { return isSame(*entry.second); });
    return found != last ? found->second : nullptr;
  }
  /// Returns whether there is a user text with the same description and values.
  bool hasUserText(const ID3v2::UserText& text) const;
  /// Returns whether a frame with the identifier of `frame` has the same text. Description and language may
  /// differ.
  bool hasText(const ID3v2::Frame& frame, const ID3v2::LanguageText& text) const;
  bool hasTextWithDescription(const ID3v2::Frame& frame, const ID3v2::LanguageText& text) const;
  bool hasTextInLanguage(const ID3v2::Frame& frame, const ID3v2::LanguageText& text) const;
  /// Returns the first picture with this data, or nullptr.
  const ID3v2::Picture* pictureOf(const platform::SharedBytes& data) const;
  /// Returns whether there is a picture with the same data, type and description.
  bool hasPicture(const ID3v2::Picture& picture) const;
  /// Returns the joined text of all text frames with this identifier.
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
  std::unordered_map<std::size_t, const ID3v2::Picture*> picturesByData_;
  std::unordered_multimap<std::size_t, const ID3v2::Picture*> picturesByContent_;
  std::unordered_set<std::size_t> texts_;
  std::unordered_map<std::string, std::vector<const ID3v2::Text*>> textFrames_;
};

}  // namespace QuillmarkKit
