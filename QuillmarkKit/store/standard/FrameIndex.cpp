#include "QuillmarkKit/store/standard/FrameIndex.h"

#include <functional>
#include <string_view>

#include "QuillmarkKit/store/standard/TagTexts.h"

namespace QuillmarkKit {

using ID3v2::Frame;
using ID3v2::LanguageText;
using ID3v2::Picture;
using ID3v2::UserText;
using PlainValues::plainText;

namespace {

/// Returns a hash of the frame's identifier and content.
std::size_t hash(const Frame& frame);

/// A hash that values can be added to.
class Hash {
 public:
  Hash& add(std::string_view text) { return mix(std::hash<std::string_view>()(text)); }
  Hash& add(std::size_t number) { return mix(number); }
  Hash& add(const std::vector<Frame>& frames) {
    for (const Frame& frame : frames) mix(hash(frame));
    return *this;
  }
  std::size_t value() const { return value_; }

 private:
  Hash& mix(std::size_t value) {
    constexpr auto multiplier = static_cast<std::size_t>(0x9E3779B97F4A7C15U);
    value_ = (value_ ^ value) * multiplier;
    value_ ^= value_ >> 15U;
    return *this;
  }

  std::size_t value_ = 0;
};

// Each overload adds the content to the hash.

void addTo(Hash& sum, const ID3v2::Opaque& opaque) {
  sum.add(platform::charactersOf(opaque.bytes));
}
void addTo(Hash& sum, const ID3v2::Text& text) {
  sum.add(text.text);
}
void addTo(Hash& sum, const UserText& text) {
  sum.add(text.description).add(text.text);
}
void addTo(Hash& sum, const LanguageText& text) {
  sum.add(text.description).add(text.text);
}
void addTo(Hash& sum, const Picture& picture) {
  sum.add(picture.description).add(platform::charactersOf(picture.data));
}
void addTo(Hash& sum, const ID3v2::URL& url) {
  sum.add(url.url);
}
void addTo(Hash& sum, const ID3v2::Chapter& chapter) {
  sum.add(chapter.elementID).add(chapter.startTime).add(chapter.endTime).add(chapter.frames);
}
void addTo(Hash& sum, const ID3v2::TableOfContents& table) {
  sum.add(table.elementID).add(table.frames);
}
void addTo(Hash&, const ID3v2::Unread&) {
}

std::size_t hash(const Frame& frame) {
  Hash sum;
  sum.add(frame.identifier);
  std::visit([&](const auto& content) { addTo(sum, content); }, frame.content);
  return sum.value();
}

std::size_t keyOf(const UserText& text) {
  return Hash().add("user text").add(text.description).add(plainText("TXXX", text.text)).value();
}

std::size_t keyOf(const Frame& frame, const LanguageText& text) {
  return Hash().add(frame.identifier).add(plainText("", text.text)).value();
}

std::size_t keyWithDescription(const Frame& frame, const LanguageText& text) {
  return Hash().add(text.description).add(keyOf(frame, text)).value();
}

std::size_t keyWithLanguage(const Frame& frame, const LanguageText& text) {
  return Hash()
      .add("language")
      .add(PlainValues::plainLanguage(text.language))
      .add(keyOf(frame, text))
      .value();
}

std::size_t keyOf(const platform::SharedBytes& data) {
  return Hash().add(platform::charactersOf(data)).value();
}

std::size_t keyOf(const Picture& picture) {
  return Hash().add(keyOf(picture.data)).add(picture.type).add(picture.description).value();
}

}  // namespace

std::size_t FrameIndex::hashOf(const Frame& frame) {
  return hash(frame);
}

FrameIndex::FrameIndex(const ID3v2::Tag& tag) {
  for (const Frame& frame : tag.frames) {
    frames_.emplace(hashOf(frame), &frame);
    std::visit([&](const auto& content) { note(frame, content); }, frame.content);
  }
}

bool FrameIndex::hasUserText(const UserText& text) const {
  return texts_.contains(keyOf(text));
}

bool FrameIndex::hasText(const Frame& frame, const LanguageText& text) const {
  return texts_.contains(keyOf(frame, text));
}

bool FrameIndex::hasTextWithDescription(const Frame& frame, const LanguageText& text) const {
  return texts_.contains(keyWithDescription(frame, text));
}

bool FrameIndex::hasTextInLanguage(const Frame& frame, const LanguageText& text) const {
  return texts_.contains(keyWithLanguage(frame, text));
}

const Picture* FrameIndex::pictureOf(const platform::SharedBytes& data) const {
  const auto found = picturesByData_.find(keyOf(data));
  return found != picturesByData_.end() && found->second->data == data ? found->second : nullptr;
}

bool FrameIndex::hasPicture(const Picture& picture) const {
  const auto [first, last] = picturesByContent_.equal_range(keyOf(picture));
  return std::any_of(first, last, [&](const auto& entry) {
    const Picture& other = *entry.second;
    return other.type == picture.type && other.description == picture.description &&
           other.data == picture.data;
  });
}

std::string FrameIndex::textOf(const std::string& identifier) const {
  const auto found = textFrames_.find(identifier);
  return found != textFrames_.end() ? TagTexts::joined(found->second) : "";
}

void FrameIndex::note(const Frame& frame, const ID3v2::Text& text) {
  textFrames_[frame.identifier].push_back(&text);
}

void FrameIndex::note(const Frame&, const UserText& text) {
  texts_.insert(keyOf(text));
}

void FrameIndex::note(const Frame& frame, const LanguageText& text) {
  texts_.insert(keyOf(frame, text));
  texts_.insert(keyWithDescription(frame, text));
  texts_.insert(keyWithLanguage(frame, text));
}

void FrameIndex::note(const Frame&, const Picture& picture) {
  picturesByData_.emplace(keyOf(picture.data), &picture);
  picturesByContent_.emplace(keyOf(picture), &picture);
}

}  // namespace QuillmarkKit
