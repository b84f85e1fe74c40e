#include "QuillmarkKit/store/standard/LosslessConversion.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "QuillmarkKit/store/standard/TagTexts.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::LosslessConversion {

namespace Strings = platform::Strings;
using namespace TagTexts;
using ID3v2::Frame;
using ID3v2::LanguageText;
using ID3v2::Picture;
using ID3v2::Tag;

namespace {

constexpr std::uint8_t otherPicture = 0;
constexpr std::uint8_t frontCover = 3;

Frame textFrame(std::string_view identifier, std::string text) {
  return {.identifier = std::string(identifier), .content = ID3v2::Text{std::move(text)}};
}

TagSet::Number yearOf(const Tag& tag) {
  TagSet::Number year;
  for (const std::string_view identifier : {"TDRC", "TYER"}) {
    forEachValue(textOf(tag, identifier), [&](std::string_view value) {
      if (!year) year = yearIn(Strings::trimmingWhiteSpace(value));
    });
  }
  return year;
}

bool isTotal(TagField field) {
  return field == TagField::trackTotal || field == TagField::discTotal;
}

/// Returns the text that a number field other than the year is read from.
std::string numberTextOf(const Tag& tag, TagField field) {
  if (field == TagField::bpm) return firstValue(tag, frameIdentifier(field));
  return positionIn(firstValue(tag, frameIdentifier(field))).part(isTotal(field));
}

/// Returns whether a program has stored data for its own use in the comment.
bool isTechnical(const LanguageText& text) {
  static constexpr std::array<std::string_view, 3> beginnings{"iTun", "ID3v1", "Songs-DB"};
  return std::ranges::any_of(beginnings,
                             [&](auto beginning) { return text.description.starts_with(beginning); });
}

/// Returns the frame that the comment, or the lyrics, are read from: the first without a description, else
/// the first that is not technical. Ignores blank texts. Returns nullptr if there is none.
template <class TagType>
auto languageTextOf(TagType& tag, std::string_view identifier) -> decltype(tag.frames.data()) {
  decltype(tag.frames.data()) found = nullptr;
  for (auto& frame : tag.frames) {
    const auto* text = frame.identifier == identifier ? std::get_if<LanguageText>(&frame.content) : nullptr;
    if (text == nullptr || isBlank(text->text)) continue;
    if (text->description.empty()) return &frame;
    if (found == nullptr && !isTechnical(*text)) found = &frame;
  }
  return found;
}

/// Returns the first frame with a blank text and no description, in which a new text can be written, or
/// nullptr.
Frame* blankLanguageTextOf(Tag& tag, std::string_view identifier) {
  const auto frame = std::ranges::find_if(tag.frames, [&](const Frame& one) {
    const auto* text = one.identifier == identifier ? std::get_if<LanguageText>(&one.content) : nullptr;
    return text != nullptr && text->description.empty() && isBlank(text->text);
  });
  return frame != tag.frames.end() ? &*frame : nullptr;
}

template <class TagType>
auto coverOf(TagType& tag) -> decltype(tag.frames.data()) {
  decltype(tag.frames.data()) first = nullptr;
  for (auto& frame : tag.frames) {
    const auto* picture = std::get_if<Picture>(&frame.content);
    if (picture == nullptr || picture->data.empty()) continue;
    if (picture->type == frontCover) return &frame;
    if (first == nullptr) first = &frame;
  }
  return first;
}

/// Returns the frame whose picture a new front cover replaces, or nullptr if it replaces none. This is the
/// front cover, even one without data, else the picture that is shown as the artwork if its type is "other".
template <class TagType>
auto replacedPictureOf(TagType& tag) -> decltype(tag.frames.data()) {
  const auto shown = coverOf(tag);
  const auto typeOf = [](const Frame& frame) { return std::get<Picture>(frame.content).type; };
  if (shown != nullptr && typeOf(*shown) == frontCover) return shown;
  for (auto& frame : tag.frames) {
    if (std::holds_alternative<Picture>(frame.content) && typeOf(frame) == frontCover) return &frame;
  }
  return shown != nullptr && typeOf(*shown) == otherPicture ? shown : nullptr;
}

/// Removes all frames that `isOld` accepts. Inserts the replacement, if any, in the place of the first of
/// them, or at the end if there were none.
template <class Predicate>
void replaceFrames(Tag& tag, Predicate isOld, std::optional<Frame> replacement) {
  std::vector<Frame> frames;
  frames.reserve(tag.frames.size() + 1);
  for (Frame& frame : tag.frames) {
    if (!isOld(frame)) {
      frames.push_back(std::move(frame));
    } else if (replacement) {
      frames.push_back(*std::exchange(replacement, std::nullopt));
    }
  }
  if (replacement) frames.push_back(std::move(*replacement));
  tag.frames = std::move(frames);
}

void setText(Tag& tag, TagField field, const TagSet::Text& text) {
  std::optional<Frame> frame;
  const bool isDateOfV24 = field == TagField::year && tag.version == 4;
  if (text && !text->empty()) frame = textFrame(isDateOfV24 ? "TDRC" : frameIdentifier(field), *text);
  replaceFrames(
      tag, [&](const Frame& old) { return isFrameOf(field, old.identifier); }, std::move(frame));
}

void setLanguageText(Tag& tag, TagField field, const TagSet::Text& text) {
  const std::string_view identifier = frameIdentifier(field);
  if (!text) {
    const auto isOld = [&](const Frame& frame) {
      const auto* old = std::get_if<LanguageText>(&frame.content);
      return frame.identifier == identifier && (old == nullptr || !isTechnical(*old));
    };
    return replaceFrames(tag, isOld, std::nullopt);
  }
  Frame* frame = languageTextOf(tag, identifier);
  if (frame == nullptr) frame = blankLanguageTextOf(tag, identifier);
  if (frame != nullptr) {
    std::get<LanguageText>(frame->content).text = *text;
    frame->original = {};
  } else {
    tag.frames.push_back({.identifier = std::string(identifier), .content = LanguageText{"eng", "", *text}});
  }
}

void setNumber(Tag& tag, TagField field, const TagSet::Number& number) {
  if (field == TagField::year) return setText(tag, field, number ? yearText(*number) : TagSet::Text());
  std::string text = number ? std::to_string(*number) : "";
  if (field != TagField::bpm) {
    const std::string old = textOf(tag, frameIdentifier(field));
    Position position = positionIn(firstValue(tag, frameIdentifier(field)));
    position.part(isTotal(field)) = std::move(text);
    text = position.text();
    // Keep further positions in the frame, unless the frame is removed.
    bool isFirst = true;
    forEachValue(text.empty() ? "" : old, [&](std::string_view value) {
      if (isBlank(value)) return;
      if (!std::exchange(isFirst, false)) addValue(text, value);
    });
  }
  setText(tag, field, text);
}

void setArtwork(Tag& tag, const std::optional<Artwork>& artwork) {
  if (!artwork) {
    const auto isOld = [](const Frame& frame) { return isFrameOf(TagField::artwork, frame.identifier); };
    return replaceFrames(tag, isOld, std::nullopt);
  }
  Frame* frame = replacedPictureOf(tag);
  if (frame == nullptr) {
    // Insert before other pictures, because many players show the first one.
    const auto first = std::ranges::find(tag.frames, frameIdentifier(TagField::artwork), &Frame::identifier);
    frame = &*tag.frames.insert(first, {.identifier = "APIC", .content = Picture{"", frontCover, "", {}}});
  }
  auto& picture = std::get<Picture>(frame->content);
  picture.mimeType = mimeType(artwork->format);
  picture.data = artwork->data;
  frame->original = {};
}

bool hasUnreadFrame(const Tag& tag, TagField field) {
  return std::ranges::any_of(tag.frames, [&](const Frame& frame) {
    const auto* opaque = std::get_if<ID3v2::Opaque>(&frame.content);
    const bool isUnread =
        opaque != nullptr ? !opaque->bytes.empty() : std::holds_alternative<ID3v2::Unread>(frame.content);
    return isUnread && isFrameOf(field, frame.identifier);
  });
}

}  // namespace

const Frame* shownFrameOf(const Tag& tag, TagField field) {
  if (field == TagField::artwork) return coverOf(tag);
  const bool isLanguageText = field == TagField::comment || field == TagField::lyrics;
  return isLanguageText ? languageTextOf(tag, frameIdentifier(field)) : nullptr;
}

TagSet fieldsOf(const Tag& tag) {
  TagSet tags;
  for (const TagField field : allTagFields) {
    dispatch(
        field,
        [&](TextMember member) {
          if (field == TagField::comment || field == TagField::lyrics) {
            const Frame* frame = shownFrameOf(tag, field);
            if (frame != nullptr) tags.*member = std::get<LanguageText>(frame->content).text;
          } else {
            const std::string text = textOf(tag, frameIdentifier(field));
            tags.*member = field == TagField::genre ? genresIn(text) : text;
          }
        },
        [&](NumberMember member) {
          tags.*member =
              field == TagField::year ? yearOf(tag) : Strings::decimalInteger(numberTextOf(tag, field));
        },
        [&] {
          const Frame* cover = coverOf(tag);
          if (cover != nullptr) tags.artwork = Artwork::detecting(std::get<Picture>(cover->content).data);
        });
  }
  tags.normalize();
  return tags;
}

void setFields(Tag& tag, const TagSet& wanted, TagFields selected) {
  for (const TagField field : allTagFields) {
    if (!selected.contains(field)) continue;
    dispatch(
        field,
        [&](TextMember member) {
          const TagSet::Text& text = wanted.*member;
          if (field == TagField::comment || field == TagField::lyrics) {
            setLanguageText(tag, field, text);
          } else {
            setText(tag, field, text && field == TagField::genre ? genreText(*text) : text);
          }
        },
        [&](NumberMember member) { setNumber(tag, field, wanted.*member); },
        [&] { setArtwork(tag, wanted.artwork); });
  }
}

bool keepsShownPicture(const Tag& tag) {
  return coverOf(tag) != nullptr && replacedPictureOf(tag) != coverOf(tag);
}

TagSet asRead(const TagSet& tags) {
  Tag tag;
  setFields(tag, tags.normalized(), TagFields::all);
  return fieldsOf(tag);
}

std::optional<Unrepresentable> unrepresentableValue(const Tag& tag, const TagSet& values, TagField field) {
  if (values.value(field)) return std::nullopt;
  if (field == TagField::artwork) {
    const Frame* cover = coverOf(tag);
    if (cover != nullptr) return Unrepresentable{.picture = &std::get<Picture>(cover->content)};
  } else if (integerKeyPath(field) != nullptr) {
    std::string text = field == TagField::year ? firstValue(tag, "TDRC") : numberTextOf(tag, field);
    if (field == TagField::year && text.empty()) text = firstValue(tag, "TYER");
    if (!text.empty()) return Unrepresentable{.text = std::move(text)};
  }
  if (hasUnreadFrame(tag, field)) return Unrepresentable{};
  return std::nullopt;
}

bool sharesUnreadFrame(const Tag& tag, TagField field, TagFields fields) {
  const auto isShared = [&](TagField other) {
    return !fields.contains(other) && frameIdentifier(other) == frameIdentifier(field);
  };
  return std::ranges::any_of(allTagFields, isShared) && hasUnreadFrame(tag, field);
}

}  // namespace QuillmarkKit::LosslessConversion
