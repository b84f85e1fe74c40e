#include "QuillmarkKit/store/standard/TagNotes.h"

#include <algorithm>
#include <array>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "ID3v2/FrameForm.h"
#include "ID3v2/Reading.h"
#include "QuillmarkKit/store/file/FieldFrames.h"
#include "QuillmarkKit/store/standard/FrameIndex.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagTexts.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::TagLosses {

using ID3v2::Frame;
using ID3v2::LanguageText;
using ID3v2::Picture;
using ID3v2::Tag;
using ID3v2::UserText;
using PlainValues::haveSameValues;
using TagDescriptions::inQuotes;

namespace {

/// Returns the date without leading zeros: tags differ in whether they pad a year to four digits.
std::string_view withoutZerosInFront(std::string_view date) {
  while (date.size() > 1 && date[0] == '0' && platform::Strings::isASCIIDigit(date[1])) date.remove_prefix(1);
  return date;
}

class Comparison {
 public:
  Comparison(const Tag& expected, const Tag& found)
      : expected_(expected), found_(found), expectedIndex_(expected), foundIndex_(found) {
    for (const Frame& frame : expected.frames) {
      if (isIndependentOfVersion(frame) && hasEqual(frame)) continue;
      std::visit([&](const auto& content) { compare(frame, content); }, frame.content);
    }
    const std::string date = TagTexts::dateIn(expected);
    const std::string newDate = TagTexts::dateIn(found);
    const bool isKept =
        newDate.empty() ? date.empty() : withoutZerosInFront(newDate).starts_with(withoutZerosInFront(date));
    if (!isKept) reportText("date", date, newDate);
  }

  Losses losses() && {
    Losses losses{{}, std::move(changed_)};
    for (const auto& [one, many, names] : groups_) {
      std::string item = names.size() == 1 ? one : std::to_string(names.size()) + " " + many;
      if (!names.front().empty()) item += " (" + list(names) + ")";
      losses.dropped.push_back(std::move(item));
    }
    return losses;
  }

 private:
  /// Losses of one kind, which are reported together.
  struct Group {
    std::string one;
    std::string many;
    std::vector<std::string> names;
  };

  static std::string list(const std::vector<std::string>& names) {
    constexpr std::size_t limit = 5;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i <= limit; ++i) {
      // Descriptions of pictures contain commas.
      if (i > 0) text += names[i].starts_with('"') ? ", " : "; ";
      text += i < limit ? names[i] : "…";
    }
    return text;
  }

  void drop(const std::string& one, const std::string& many, std::string name) {
    const auto [place, isNew] = groupsByName_.try_emplace(one, groups_.size());
    if (isNew) groups_.push_back({one, many, {}});
    groups_[place->second].names.push_back(std::move(name));
  }

  void reportText(std::string_view what, std::string_view before, std::string_view after) {
    const std::string text = std::string(what) + " " + inQuotes(before);
    // If the new text only looks the same, other readers do not understand it, so the old one is lost.
    if (TagTexts::isBlank(after) || inQuotes(before) == inQuotes(after)) {
      drop("the " + text, "", "");
    } else {
      changed_.push_back(text + " becomes " + inQuotes(after));
    }
  }

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
        isNext ? &frames[next_] : foundIndex_.find(frame, [&](const Frame& other) { return other == frame; });
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
    const Frame* same = foundIndex_.find(frame, isSame);
    if (same == nullptr) same = foundIndex_.find(frame, hasContent);
    return same != nullptr ? std::optional(same->flags) : std::nullopt;
  }

  /// Does nothing: a frame that cannot be read is written as it was, or reported as an unreadable part.
  void compare(const Frame&, const ID3v2::Unread&) {}

  /// Ignores frames without content. Compares flags, too: v2.3 and v2.4 have them at different positions, so
  /// flags can change their meaning in a frame whose bytes stay the same.
  void compare(const Frame& frame, const ID3v2::Opaque& opaque) {
    static constexpr std::array names =
        std::to_array<std::pair<std::uint16_t, std::string_view>>({{ID3v2::compressionFlag, "compression"},
                                                                   {ID3v2::encryptionFlag, "encryption"},
                                                                   {ID3v2::groupingFlag, "group"}});
    if (opaque.bytes.empty()) return;
    const auto flags = flagsOfSame(frame);
    if (!flags) return dropFrame(frame);
    for (const auto& [flag, name] : names) {
      if ((frame.flags & ~*flags & flag) == 0) continue;
      drop("the " + std::string(name) + " flag of a " + frame.identifier + " frame",
           std::string(name) + " flags of " + frame.identifier + " frames", "");
    }
  }

  /// Compares all text frames of an identifier at once, because several frames mean several values.
  void compare(const Frame& frame, const ID3v2::Text&) {
    const std::string& identifier = frame.identifier;
    if (FieldFrames::isOfTheDate(identifier) || !comparedTexts_.insert(identifier).second) return;
    const std::string before = expectedIndex_.textOf(identifier);
    const std::string after = foundIndex_.textOf(identifier);
    if (!haveSameValues(identifier, before, after) && !TagTexts::isBlank(before))
      reportText(TagDescriptions::nameOf(identifier), before, after);
  }

  void compare(const Frame&, const UserText& text) {
    if (!foundIndex_.hasUserText(text)) drop("a user text", "user texts", inQuotes(text.description));
  }

  void compare(const Frame& frame, const LanguageText& text) {
    if (TagTexts::isBlank(text.text)) return;
    const bool isComment = frame.identifier == "COMM";
    if (!foundIndex_.hasText(frame, text)) {
      return drop(isComment ? "a comment" : "lyrics", isComment ? "comments" : "lyrics",
                  inQuotes(text.description.empty() ? text.text : text.description));
    }
    const auto dropOf = [&](const std::string& what, std::string_view value) {
      drop("the " + what + " " + inQuotes(value) + (isComment ? " of a comment" : " of the lyrics"), "", "");
    };
    if (!foundIndex_.hasTextWithDescription(frame, text) && !TagTexts::isBlank(text.description))
      dropOf("description", text.description);
    const std::string language = PlainValues::plainLanguage(text.language);
    if (!foundIndex_.hasTextInLanguage(frame, text) && !language.empty()) dropOf("language", language);
  }

  void compare(const Frame&, const Picture& picture) {
    const std::string described = TagDescriptions::describe(picture);
    if (foundIndex_.hasPicture(picture)) return;
    const Picture* same = foundIndex_.pictureOf(picture.data);
    if (same == nullptr) return drop("a picture", "pictures", described);
    if (same->type != picture.type) {
      changed_.push_back("a picture (" + described + ") becomes the " +
                         std::string(TagDescriptions::pictureType(same->type)));
    }
    if (!TagTexts::isBlank(picture.description) && same->description != picture.description) {
      drop("the description " + inQuotes(picture.description) + " of a picture", "", "");
    }
  }

  /// Compares frames that contain other frames. v2.3 and v2.4 encode the sizes of the inner frames
  /// differently, so most readers lose inner frames that were copied unchanged from v2.4 to v2.3.
  template <class Parent>
  void compareParent(const Frame& frame, const Parent& parent) {
    const auto isSame = [&](const Frame& other) {
      const auto isInForm = [](const Frame& inner) { return !inner.original.empty(); };
      const auto* same = other.identifier == frame.identifier ? std::get_if<Parent>(&other.content) : nullptr;
      return same != nullptr && *same == parent &&
             (expected_.version == 3 || std::ranges::all_of(same->frames, isInForm));
    };
    if (foundIndex_.find(frame, isSame) == nullptr) dropFrame(frame);
  }
  void compare(const Frame& frame, const ID3v2::Chapter& chapter) { compareParent(frame, chapter); }
  void compare(const Frame& frame, const ID3v2::TableOfContents& table) { compareParent(frame, table); }

  void compare(const Frame& frame, const ID3v2::URL&) {
    if (!flagsOfSame(frame)) dropFrame(frame);
  }
  void dropFrame(const Frame& frame) {
    drop("a " + frame.identifier + " frame", frame.identifier + " frames", "");
  }

  const Tag& expected_;
  const Tag& found_;
  FrameIndex expectedIndex_;
  FrameIndex foundIndex_;
  /// The position after the frame that was found last.
  std::size_t next_ = 0;
  std::set<std::string> comparedTexts_;
  std::vector<Group> groups_;
  std::unordered_map<std::string, std::size_t> groupsByName_;
  std::vector<std::string> changed_;
};

void addTo(std::string& text, std::string_view joint, std::string_view more) {
  if (!text.empty()) text += joint;
  text += more;
}

std::string joined(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) addTo(text, ", ", item);
  return text;
}

/// Clears the description and language of a comment or of lyrics, and the description of a picture, if the
/// change replaces them: their loss is expected.
void forgetOldDescriptions(Tag& tag, const TagSet& wanted, TagFields requested) {
  TagFields rest = requested;
  const auto isReplaced = [&](TagField field, bool isNew) {
    if (!isNew || !rest.contains(field)) return false;
    rest = rest.without({field});
    return true;
  };
  for (Frame& frame : tag.frames) {
    if (auto* picture = std::get_if<Picture>(&frame.content)) {
      if (isReplaced(TagField::artwork, wanted.artwork && picture->data == wanted.artwork->data))
        picture->description.clear();
    } else if (auto* text = std::get_if<LanguageText>(&frame.content)) {
      const bool isComment = frame.identifier == "COMM";
      if (isReplaced(isComment ? TagField::comment : TagField::lyrics,
                     text->text == (isComment ? wanted.comment : wanted.lyrics))) {
        text->description.clear();
        text->language.clear();
      }
    }
  }
}

/// Returns a clause about a date of v2.4 that stays in the tag although the year has changed, or an empty
/// text.
std::string oldDateBeside(const Tag& tag, const TagSet::Number& year, TagFields requested) {
  const std::string date = TagTexts::firstValue(tag, "TDRC");
  if (!year || !requested.contains(TagField::year) || date.empty() || TagTexts::yearIn(date) == year)
    return "";
  return "the old date " + date + " (TDRC) stays beside the new year " + std::to_string(*year) +
         "; --lossless replaces it";
}

}  // namespace

Losses between(const Tag& expected, const Tag& found) {
  return Comparison(expected, found).losses();
}

std::string ofWriting(FileTags old, const TagSet& wanted, TagFields requested,
                      const platform::SharedBytes& newTag) {
  LosslessConversion::setFields(old.tag, wanted, requested);
  forgetOldDescriptions(old.tag, wanted, requested);
  auto found = ID3v2::read(newTag).value_or(ID3v2::Reading());
  std::string sentence = oldDateBeside(found.tag, wanted.year, requested);
  if (!sentence.empty()) {
    std::erase_if(found.tag.frames, [](const Frame& frame) { return frame.identifier == "TDRC"; });
  }
  const bool isOnlyDate = !sentence.empty();
  Losses losses = between(old.tag, found.tag);
  const auto add = [&](const std::string& clause) { addTo(sentence, "; ", clause); };
  if (!old.hasID3v2Tag) {
    if (!losses.dropped.empty()) add("hides its ID3v1 tag (" + joined(losses.dropped) + ")");
    if (old.hasAPETag) add("hides its APE tag");
  } else {
    std::unordered_set<std::string_view> unreadable;
    for (const ID3v2::UnreadablePart& part : found.unreadable) unreadable.insert(part.what);
    for (const ID3v2::UnreadablePart& part : old.unreadable) {
      if (!unreadable.contains(part.what)) losses.dropped.push_back(part.what);
    }
    if (!losses.dropped.empty()) add("drops " + joined(losses.dropped));
  }
  for (const std::string& clause : losses.changed) add(clause);
  if (sentence.empty()) return sentence;
  if (isOnlyDate && losses.dropped.empty() && losses.changed.empty() && old.hasID3v2Tag)
    return sentence + ".";
  const bool canBeKept = old.isWritable() && !old.hasAPETag;
  return sentence + (canBeKept ? ". --lossless keeps them." : ".");
}

std::string ofReading(const FileTags& tags, const TagSet& read, TagFields selected) {
  const Tag& tag = tags.tag;
  const TagSet meant = LosslessConversion::fieldsOf(tag);
  std::string sentence;
  bool canBeCarried = true;
  for (const TagField field : allTagFields) {
    if (!selected.contains(field)) continue;
    std::optional<std::string> shown = meant.value(field);
    const std::string readAs = read.value(field).value_or("");
    if (shown) {
      const bool isSame = field == TagField::artwork
                              ? meant.artwork == read.artwork
                              : haveSameValues(FieldFrames::identifierOf(field), *shown, readAs);
      if (isSame) continue;
      shown = stringKeyPath(field) != nullptr ? inQuotes(*shown)
              : field == TagField::artwork    ? "(" + *shown + ")"
                                              : *shown;
    } else {
      shown = LosslessConversion::unrepresentableValue(tag, meant, field);
      if (!shown) continue;
      canBeCarried = false;
    }
    const bool isYear = field == TagField::year;
    const std::string what = isYear ? "date " + TagTexts::dateIn(tag) : nameInSentence(field) + " " + *shown;
    addTo(sentence, ", ", "its " + what + (readAs.empty() ? " is not read" : " is read"));
    if (isYear) sentence += readAs.empty() ? " as a year" : " as the year " + readAs;
    if (!isYear && !readAs.empty()) sentence += " as " + inQuotes(readAs);
  }
  constexpr std::size_t mostParts = 5;
  std::size_t count = 0;
  for (const std::string& part : tags.unreadablePartsFor(selected)) {
    if (count == mostParts) sentence += ", …";
    if (count++ < mostParts) addTo(sentence, ", ", part + " is not read");
    canBeCarried = false;
  }
  if (sentence.empty()) return sentence;
  return sentence + (canBeCarried ? ". --lossless carries them." : ".");
}

}  // namespace QuillmarkKit::TagLosses
