#include "QuillmarkKit/store/standard/TagDifferences.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "ID3v2/FrameForm.h"
#include "QuillmarkKit/model/TagField.h"
#include "QuillmarkKit/store/standard/TagTexts.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::TagDifferences {

using ID3v2::Frame;
using ID3v2::LanguageText;
using ID3v2::Picture;
using ID3v2::Tag;
using ID3v2::UserText;
using PlainValues::haveSameValues;
using PlainValues::plainLanguage;
using PlainValues::plainText;

namespace {

/// A hash that values can be added to.
class Hash {
 public:
  Hash& add(std::string_view text) { return add(std::hash<std::string_view>()(text)); }
  Hash& add(const platform::SharedBytes& bytes) { return add(platform::charactersOf(bytes)); }
  Hash& add(std::size_t number) {
    constexpr auto multiplier = static_cast<std::size_t>(0x9E3779B97F4A7C15U);
    value_ = (value_ ^ number) * multiplier;
    value_ ^= value_ >> 15U;
    return *this;
  }
  Hash& add(const std::vector<Frame>& frames) {
    for (const Frame& frame : frames) addContent(frame).add(frame.flags).add(frame.group);
    return *this;
  }
  /// Adds the frame's identifier and content.
  Hash& addContent(const Frame& frame) {
    add(frame.identifier).add(frame.content.index());
    std::visit([this](const auto& content) { add(content); }, frame.content);
    return *this;
  }
  std::size_t value() const { return value_; }

 private:
  // Each overload adds all parts of a content.
  void add(const ID3v2::Opaque& opaque) { add(opaque.bytes); }
  void add(const ID3v2::Text& text) { add(text.text); }
  void add(const UserText& text) { add(text.description).add(text.text); }
  void add(const LanguageText& text) { add(text.language).add(text.description).add(text.text); }
  void add(const Picture& picture) {
    add(picture.mimeType).add(picture.type).add(picture.description).add(picture.data);
  }
  void add(const ID3v2::URL& url) { add(url.url); }
  void add(const ID3v2::Chapter& chapter) {
    add(chapter.elementID).add(chapter.startTime).add(chapter.endTime);
    add(chapter.startOffset).add(chapter.endOffset).add(chapter.frames);
  }
  void add(const ID3v2::TableOfContents& table) {
    add(table.elementID).add(table.flags);
    for (const std::string& child : table.childElementIDs) add(child);
    add(table.frames);
  }
  void add(const ID3v2::Unread&) {}

  std::size_t value_ = 0;
};

/// The ways of looking for a frame. A frame is found by all of its parts that the way compares.
enum class By : std::size_t {
  frame,
  content,
  contentAndForm,
  contentInForm,
  userText,
  text,
  textAndDescription,
  textAndLanguage,
  pictureData,
  picture
};

Hash keyBy(By way) {
  return Hash().add(static_cast<std::size_t>(way));
}

std::size_t keyOfContent(By way, const Frame& frame) {
  return keyBy(way).addContent(frame).value();
}

std::size_t keyOfContentAndForm(const Frame& frame) {
  return keyBy(By::contentAndForm).addContent(frame).add(std::size_t{frame.flags} & ID3v2::formFlags).value();
}

std::size_t keyOfFrame(const Frame& frame) {
  return keyBy(By::frame).addContent(frame).add(frame.flags).add(frame.group).value();
}

std::size_t keyOf(const UserText& text) {
  return keyBy(By::userText).add(text.description).add(plainText("TXXX", text.text)).value();
}

std::size_t keyOfText(By way, const Frame& frame, const LanguageText& text, std::string_view further) {
  return keyBy(way).add(frame.identifier).add(plainText("", text.text)).add(further).value();
}

std::size_t keyOfData(const Picture& picture) {
  return keyBy(By::pictureData).add(picture.data).value();
}

std::size_t keyOf(const Picture& picture) {
  return keyBy(By::picture).add(picture.data).add(picture.type).add(picture.description).value();
}

/// Returns whether the inner frames are in the form of the tag's version.
template <class Parent>
bool areFramesInForm(const Parent& parent) {
  return std::ranges::all_of(parent.frames, [](const Frame& inner) { return !inner.original.empty(); });
}

/// The frames of a tag by hashes of their parts. A hash only finds candidates: the caller compares contents.
/// The tag must outlive the index.
class FrameIndex {
 public:
  explicit FrameIndex(const Tag& tag) {
    for (const Frame& frame : tag.frames) {
      add(keyOfFrame(frame), frame);
      std::visit([&](const auto& content) { addBy(frame, content); }, frame.content);
    }
    std::ranges::stable_sort(entries_, {}, &Entry::key);
  }

  /// Returns the last frame with the key that the predicate accepts, or nullptr.
  template <class Predicate>
  const Frame* find(std::size_t key, Predicate isSame) const {
    auto at = std::ranges::upper_bound(entries_, key, {}, &Entry::key);
    while (at != entries_.begin() && (--at)->key == key) {
      if (isSame(*at->frame)) return at->frame;
    }
    return nullptr;
  }
  /// Returns the first picture with this data, or nullptr.
  const Picture* pictureOf(const Picture& picture) const {
    const auto found = std::ranges::lower_bound(entries_, keyOfData(picture), {}, &Entry::key);
    if (found == entries_.end() || found->key != keyOfData(picture)) return nullptr;
    const auto* other = std::get_if<Picture>(&found->frame->content);
    return other != nullptr && other->data == picture.data ? other : nullptr;
  }

 private:
  struct Entry {
    std::size_t key;
    const Frame* frame;
  };

  void add(std::size_t key, const Frame& frame) { entries_.push_back({key, &frame}); }
  void addContent(const Frame& frame) {
    add(keyOfContent(By::content, frame), frame);
    add(keyOfContentAndForm(frame), frame);
  }

  void addBy(const Frame& frame, const ID3v2::Opaque&) { addContent(frame); }
  void addBy(const Frame& frame, const ID3v2::URL&) { addContent(frame); }
  void addBy(const Frame&, const ID3v2::Unread&) {}
  void addBy(const Frame&, const ID3v2::Text&) {}
  void addBy(const Frame& frame, const UserText& text) { add(keyOf(text), frame); }
  void addBy(const Frame& frame, const LanguageText& text) {
    add(keyOfText(By::text, frame, text, ""), frame);
    add(keyOfText(By::textAndDescription, frame, text, text.description), frame);
    add(keyOfText(By::textAndLanguage, frame, text, plainLanguage(text.language)), frame);
  }
  void addBy(const Frame& frame, const Picture& picture) {
    add(keyOfData(picture), frame);
    add(keyOf(picture), frame);
  }
  /// Chapters and tables of contents.
  template <class Parent>
  void addBy(const Frame& frame, const Parent& parent) {
    add(keyOfContent(By::content, frame), frame);
    if (areFramesInForm(parent)) add(keyOfContent(By::contentInForm, frame), frame);
  }

  std::vector<Entry> entries_;
};

/// The text frames of a tag by their identifiers.
using TextFrames = std::unordered_map<std::string_view, std::vector<const ID3v2::Text*>>;

TextFrames textFramesOf(const Tag& tag) {
  TextFrames frames;
  for (const Frame& frame : tag.frames) {
    if (const auto* text = std::get_if<ID3v2::Text>(&frame.content)) frames[frame.identifier].push_back(text);
  }
  return frames;
}

/// Returns the date without leading zeros: tags differ in whether they pad a year to four digits.
std::string_view withoutZerosInFront(std::string_view date) {
  while (date.size() > 1 && date[0] == '0' && platform::Strings::isASCIIDigit(date[1])) date.remove_prefix(1);
  return date;
}

class Comparison {
 public:
  Comparison(const Tag& expected, const Tag& found)
      : expected_(expected),
        found_(found),
        expectedTexts_(textFramesOf(expected)),
        foundTexts_(textFramesOf(found)),
        foundIndex_(found) {
    for (const Frame& frame : expected.frames) {
      if (isIndependentOfVersion(frame) && hasEqual(frame)) continue;
      std::visit([&](const auto& content) { compare(frame, content); }, frame.content);
    }
    std::string date = TagTexts::dateIn(expected);
    std::string newDate = TagTexts::dateIn(found);
    const bool isKept =
        newDate.empty() ? date.empty() : withoutZerosInFront(newDate).starts_with(withoutZerosInFront(date));
    if (!isKept)
      differences.push_back({.kind = Kind::date, .before = std::move(date), .after = std::move(newDate)});
  }

  std::vector<Difference> differences;

 private:
  using Kind = Difference::Kind;

  void report(Kind kind, const Frame& frame) { differences.push_back({.kind = kind, .frame = &frame}); }

  /// Returns whether an equal frame has the same meaning whatever the version of its tag.
  static bool isIndependentOfVersion(const Frame& frame) {
    return !std::holds_alternative<ID3v2::Chapter>(frame.content) &&
           !std::holds_alternative<ID3v2::TableOfContents>(frame.content);
  }

  /// Returns whether an equal frame exists; tries the next position first, where most are.
  bool hasEqual(const Frame& frame) {
    const std::vector<Frame>& frames = found_.frames;
    const bool isNext = next_ < frames.size() && frames[next_] == frame;
    const Frame* found =
        isNext ? &frames[next_]
               : foundIndex_.find(keyOfFrame(frame), [&](const Frame& other) { return other == frame; });
    if (found == nullptr) return false;
    next_ = static_cast<std::size_t>(found - frames.data()) + 1;
    return true;
  }

  /// Returns the flags of a frame in the other tag with the same identifier and content, or nothing if there
  /// is none. Prefers a frame with the same flags of form.
  std::optional<std::uint16_t> flagsOfSame(const Frame& frame) const {
    const auto hasContent = [&](const Frame& other) {
      return other.identifier == frame.identifier && other.content == frame.content;
    };
    const auto isSame = [&](const Frame& other) {
      return hasContent(other) && ((other.flags ^ frame.flags) & ID3v2::formFlags) == 0;
    };
    const Frame* same = foundIndex_.find(keyOfContentAndForm(frame), isSame);
    if (same == nullptr) same = foundIndex_.find(keyOfContent(By::content, frame), hasContent);
    return same != nullptr ? std::optional(same->flags) : std::nullopt;
  }

  /// Does nothing: a frame that cannot be read is written as it was, or reported as an unreadable part.
  void compare(const Frame&, const ID3v2::Unread&) {}

  /// Ignores frames without content. Compares flags, too: v2.3 and v2.4 have them at different positions, so
  /// flags can change their meaning in a frame whose bytes stay the same.
  void compare(const Frame& frame, const ID3v2::Opaque& opaque) {
    if (opaque.bytes.empty()) return;
    const auto flags = flagsOfSame(frame);
    if (!flags) return report(Kind::frame, frame);
    for (const std::uint16_t flag : {ID3v2::compressionFlag, ID3v2::encryptionFlag, ID3v2::groupingFlag}) {
      if ((frame.flags & ~*flags & flag) != 0)
        differences.push_back({.kind = Kind::flag, .frame = &frame, .flag = flag});
    }
  }

  /// Compares all text frames of an identifier at once, because several frames mean several values.
  void compare(const Frame& frame, const ID3v2::Text&) {
    const std::string& identifier = frame.identifier;
    if (isDateFrame(identifier) || !comparedTexts_.insert(identifier).second) return;
    std::string before = TagTexts::joined(expectedTexts_[identifier]);
    std::string after = TagTexts::joined(foundTexts_[identifier]);
    if (haveSameValues(identifier, before, after) || TagTexts::isBlank(before)) return;
    differences.push_back(
        {.kind = Kind::text, .frame = &frame, .before = std::move(before), .after = std::move(after)});
  }

  void compare(const Frame& frame, const UserText& text) {
    const auto isSame = [&](const Frame& other) {
      const auto* same = std::get_if<UserText>(&other.content);
      return same != nullptr && same->description == text.description &&
             haveSameValues("TXXX", same->text, text.text);
    };
    if (foundIndex_.find(keyOf(text), isSame) == nullptr) report(Kind::userText, frame);
  }

  void compare(const Frame& frame, const LanguageText& text) {
    if (TagTexts::isBlank(text.text)) return;
    const std::string language = plainLanguage(text.language);
    const auto exists = [&](By way, std::string_view further, auto isSame) {
      return foundIndex_.find(keyOfText(way, frame, text, further), [&](const Frame& other) {
        const auto* same = std::get_if<LanguageText>(&other.content);
        return same != nullptr && other.identifier == frame.identifier &&
               haveSameValues("", same->text, text.text) && isSame(*same);
      }) != nullptr;
    };
    if (!exists(By::text, "", [](const LanguageText&) { return true; }))
      return report(Kind::languageText, frame);
    const auto hasDescription = [&](const LanguageText& other) {
      return other.description == text.description;
    };
    if (!TagTexts::isBlank(text.description) &&
        !exists(By::textAndDescription, text.description, hasDescription))
      report(Kind::description, frame);
    const auto hasLanguage = [&](const LanguageText& other) {
      return plainLanguage(other.language) == language;
    };
    if (!language.empty() && !exists(By::textAndLanguage, language, hasLanguage))
      report(Kind::language, frame);
  }

  void compare(const Frame& frame, const Picture& picture) {
    const auto isSame = [&](const Frame& other) {
      const auto* same = std::get_if<Picture>(&other.content);
      return same != nullptr && same->type == picture.type && same->description == picture.description &&
             same->data == picture.data;
    };
    if (foundIndex_.find(keyOf(picture), isSame) != nullptr) return;
    const Picture* same = foundIndex_.pictureOf(picture);
    if (same == nullptr) return report(Kind::picture, frame);
    if (same->type != picture.type)
      differences.push_back({.kind = Kind::pictureType, .frame = &frame, .other = same});
    if (!TagTexts::isBlank(picture.description) && same->description != picture.description)
      report(Kind::pictureDescription, frame);
  }

  /// Compares frames that contain other frames. v2.3 and v2.4 encode the sizes of the inner frames
  /// differently, so most readers lose inner frames that were copied unchanged from v2.4 to v2.3.
  template <class Parent>
  void compare(const Frame& frame, const Parent& parent) {
    const bool needsForm = expected_.version != 3;
    const auto isSame = [&](const Frame& other) {
      const auto* same = other.identifier == frame.identifier ? std::get_if<Parent>(&other.content) : nullptr;
      return same != nullptr && (!needsForm || areFramesInForm(*same)) && *same == parent;
    };
    const std::size_t key = keyOfContent(needsForm ? By::contentInForm : By::content, frame);
    if (foundIndex_.find(key, isSame) == nullptr) report(Kind::frame, frame);
  }

  void compare(const Frame& frame, const ID3v2::URL&) {
    if (!flagsOfSame(frame)) report(Kind::frame, frame);
  }

  const Tag& expected_;
  const Tag& found_;
  TextFrames expectedTexts_;
  TextFrames foundTexts_;
  FrameIndex foundIndex_;
  /// The position after the frame that was found last.
  std::size_t next_ = 0;
  std::set<std::string_view> comparedTexts_;
};

}  // namespace

std::vector<Difference> between(const Tag& expected, const Tag& found) {
  return Comparison(expected, found).differences;
}

}  // namespace QuillmarkKit::TagDifferences
